// What a frame takes from the heap, over real sockets.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "network/ProtocolFactory.h"
#include "network/TcpServer.h"
#include "steady/SteadyWorld.h"
#include "support/TarnelMessages.h"
#include "support/TcpPeer.h"

namespace {

using testing::ElementsAre;

class TickSteadyTest : public testing::Test {
protected:
    static constexpr std::uint16_t kPort = 48000;

    TickSteadyTest() { server.Init(); }
    ~TickSteadyTest() override { server.Cleanup(); }

    Allocations ticks(int count) {
        return Allocations::Of([&] {
            for (int i = 0; i < count; ++i) {
                server.ProcessEvents();
            }
        });
    }

    // Ticks until so many bytes have come back.
    void awaitAnswer(TcpPeer& client, std::size_t size) {
        std::size_t received = 0;
        while (received < size) {
            server.ProcessEvents();
            received += client.ReceiveInto(answer.data(), answer.size());
        }
        ASSERT_EQ(received, size);
    }

    SteadyWorld world{1};
    ProtocolFactory factory{&world.simState, &world.observer, &world.logger, &world.utilities,
                            &world.provider};
    TcpServer server{&world.logger, &world.utilities, &factory};
    std::vector<unsigned char> answer = std::vector<unsigned char>(100'000);
};

TEST_F(TickSteadyTest, TakesNothingWithoutAClient) {
    EXPECT_EQ(ticks(100).count, 0U);
}

TEST_F(TickSteadyTest, TakesNothingWithIdleClients) {
    std::vector<std::unique_ptr<TcpPeer>> clients;
    for (int i = 0; i < 10; ++i) {
        clients.push_back(std::make_unique<TcpPeer>(kPort));
        server.ProcessEvents();
    }
    server.ProcessEvents();
    EXPECT_EQ(ticks(100).count, 0U);
}

TEST_F(TickSteadyTest, TakesMemoryOnlyForTheMessagesOfAnExchange) {
    const Bytes identification = fromHex("11 22 33 44");
    TcpPeer client(kPort);
    client.Send(join({identification,
                      definitionsMessage({}, {{.id = 1, .name = "sim/float/10000", .type = 2}})}));
    awaitAnswer(client, 4 + 12 + 12);
    const Bytes poll = join({identification, dataMessage({})});
    const auto exchange = [&] {
        client.Send(poll);
        awaitAnswer(client, 4 + 12 + 12);
    };
    exchange();
    world.logger.Clear();
    EXPECT_EQ(Allocations::Of(exchange).count, 5U);
    EXPECT_THAT(world.logger.Messages(),
                ElementsAre("Verbose@TcpConnection::ProcessEvents : recv",
                            "Verbose@TarnelProtocol::tryParseConfig numBytes",
                            "VERBOSE@TarnelProtocol::writeOutputInfos : outputInfos.size",
                            "Verbose@TarnelProtocol::tryParseData is DATA",
                            "Verbose@TcpConnection::ProcessEvents : send"));
}

} // namespace
