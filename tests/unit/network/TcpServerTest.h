#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "network/TcpServer.h"
#include "support/Bytes.h"
#include "support/Deadline.h"
#include "support/FakeProtocol.h"
#include "support/FakeUtilities.h"
#include "support/RecordingLogger.h"
#include "support/SocketFaults.h"
#include "support/TcpPeer.h"

// A server, and the clients that connect to it.
class TcpServerTest : public testing::Test {
protected:
    TcpServerTest() {
        factory.make = [this] { return makeProtocol(); };
    }

    // Each protocol answers with the number of its connection, counted from 1.
    std::map<unsigned int, IProtocol*> makeProtocol() {
        auto* const protocol = new FakeProtocol(0x44332211);
        const int number = factory.connectionsServed;
        protocol->feed = [this, number](IRingBuffer& in, IRingBuffer& out) {
            drain(in);
            if (feedsThrow) {
                throw std::length_error("too long");
            }
            fed.push_back(number);
            out.WriteUInt8(static_cast<std::uint8_t>(number));
            return 1;
        };
        protocol->onDelete = [this, number] { deleted.push_back(number); };
        return {{0x44332211, protocol}};
    }

    void start() {
        ASSERT_TRUE(server->Init());
        logger.messages.clear();
    }

    void tick() { server->ProcessEvents(); }

    // A client that has been accepted.
    std::unique_ptr<TcpPeer> connect() {
        auto peer = std::make_unique<TcpPeer>(kPluginPort);
        const int before = factory.connectionsServed;
        EXPECT_TRUE(
            driveUntil([this] { tick(); }, [&] { return factory.connectionsServed > before; }));
        return peer;
    }

    std::string exchange(TcpPeer& peer) {
        peer.Send(fromHex("11 22 33 44"));
        return toHex(receive(peer, 5));
    }

    Bytes receive(TcpPeer& peer, std::size_t size) {
        Bytes got;
        driveUntil(
            [&] {
                tick();
                got = join({got, peer.Receive(size - got.size())});
            },
            [&] { return got.size() >= size; });
        return got;
    }

    static bool seesTheEnd(TcpPeer& peer) {
        return driveUntil([&] { peer.Receive(); },
                          [&] { return peer.SawEnd() || peer.SawReset(); });
    }

    RecordingLogger logger;
    FakeUtilities utilities;
    FakeProtocolFactory factory;
    std::vector<int> fed;
    std::vector<int> deleted;
    bool feedsThrow = false;
    std::unique_ptr<TcpServer> server = std::make_unique<TcpServer>(&logger, &utilities, &factory);
    SocketFaults faults;
};
