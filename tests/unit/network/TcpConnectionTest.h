#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network/TcpConnection.h"
#include "support/Bytes.h"
#include "support/Deadline.h"
#include "support/FakeProtocol.h"
#include "support/FakeUtilities.h"
#include "support/LoopbackListener.h"
#include "support/RecordingLogger.h"
#include "support/SocketFaults.h"
#include "support/TarnelMessages.h"
#include "support/TcpPeer.h"
#include "support/VelmarMessages.h"

inline Bytes text(const std::string& characters) {
    return {characters.begin(), characters.end()};
}

// A connection over loopback whose protocols are fakes: by default they read all bytes and answer
// nothing.
class TcpConnectionTest : public testing::Test {
protected:
    TcpConnectionTest() {
        factory.make = [this] { return makeProtocols(); };
        connection = std::make_unique<TcpConnection>(accepted, &logger, &utilities, &factory);
    }

    std::map<unsigned int, IProtocol*> makeProtocols() {
        tarnel = new FakeProtocol(0x44332211);
        velmar = new FakeProtocol(0x88776655);
        tarnel->feed = takeAllAndAnswer("");
        velmar->feed = takeAllAndAnswer("");
        return {{0x44332211, tarnel}, {0x88776655, velmar}};
    }

    // Takes all buffered bytes and records them.
    std::function<int(IRingBuffer&, IRingBuffer&)> takeAllAndAnswer(const std::string& answer) {
        return [this, answer](IRingBuffer& in, IRingBuffer& out) {
            fed.push_back(toHex(drain(in)));
            Bytes bytes = text(answer);
            out.WriteByteArray(bytes.data(), bytes.size());
            return 0;
        };
    }

    void tick() { connection->ProcessEvents(); }

    // One receiving tick, after all `bytes` have arrived.
    void receive(const Bytes& bytes) {
        peer.Send(bytes);
        ASSERT_TRUE(waitReadable(accepted));
        tick();
    }

    // The next `size` bytes that the peer receives.
    Bytes answer(std::size_t size) {
        Bytes got;
        driveUntil(
            [&] {
                got = join({got, peer.Receive(size - got.size())});
            },
            [&] { return got.size() >= size; });
        return got;
    }

    bool peerSeesTheEnd() {
        return driveUntil([&] { peer.Receive(); }, [&] { return peer.SawEnd(); });
    }

    // Receives a request and handles it; the answer waits to be sent.
    void prepareAnswer(const std::string& payload) {
        tarnel->feed = takeAllAndAnswer(payload);
        receive(kTarnel);
        logger.messages.clear();
    }

    RecordingLogger logger;
    FakeUtilities utilities;
    FakeProtocolFactory factory;
    FakeProtocol* tarnel = nullptr;
    FakeProtocol* velmar = nullptr;
    std::vector<std::string> fed;
    LoopbackListener listener;
    TcpPeer peer{listener.Port()};
    int accepted = listener.Accept();
    std::unique_ptr<TcpConnection> connection;
    SocketFaults faults;
};
