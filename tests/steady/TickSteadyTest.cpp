// What a frame allocates, over real sockets.

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "steady/SteadyWorld.h"
#include "support/TarnelMessages.h"
#include "support/TcpPeer.h"

namespace {

class TickSteadyTest : public testing::Test {
protected:
    static constexpr int kDatarefs = 1000;

    TickSteadyTest() { server.Init(); }
    ~TickSteadyTest() override { server.Cleanup(); }

    Allocations ticks(int count) {
        return Allocations::Of([&] {
            for (int i = 0; i < count; ++i) {
                server.ProcessEvents();
            }
        });
    }

    // Ticks until `size` bytes have come back.
    void awaitAnswer(TcpPeer& client, std::size_t size) {
        std::size_t received = 0;
        while (received < size) {
            server.ProcessEvents();
            received += client.ReceiveInto(answer.data(), answer.size());
        }
        ASSERT_EQ(received, size);
    }

    SteadyWorld world{kDatarefs};
    TcpServer& server = world.server;
    std::vector<unsigned char> answer = std::vector<unsigned char>(100'000);
};

TEST_F(TickSteadyTest, TakesNothingWithoutAClient) {
    EXPECT_EQ(ticks(100).count, 0U);
}

TEST_F(TickSteadyTest, TakesNothingWithIdleClients) {
    std::vector<std::unique_ptr<TcpPeer>> clients;
    for (int i = 0; i < 10; ++i) {
        clients.push_back(std::make_unique<TcpPeer>(kPluginPort));
        server.ProcessEvents();
    }
    server.ProcessEvents();
    EXPECT_EQ(ticks(100).count, 0U);
}

// The parameter is the number of outputs.
class ExchangeSteadyTest : public TickSteadyTest, public testing::WithParamInterface<int> {
protected:
    static std::vector<OutputRecord> outputs() {
        std::vector<OutputRecord> records;
        for (int i = 0; i < GetParam(); ++i) {
            records.push_back({.id = static_cast<std::uint32_t>(i),
                               .name = numbered("sim/float/", i),
                               .type = RecordType::Float});
        }
        return records;
    }

    // The frame's length, the outputs, the aircraft.
    const std::size_t answerSize = 4 + 12 * (static_cast<std::size_t>(GetParam()) + 1);
};

TEST_P(ExchangeSteadyTest, TakesNothing) {
    TcpPeer client(kPluginPort);
    client.Send(tarnelRequest(definitionsMessage({}, outputs())));
    awaitAnswer(client, answerSize);
    const Bytes poll = tarnelRequest(dataMessage({}));
    const auto exchange = [&] {
        client.Send(poll);
        awaitAnswer(client, answerSize);
    };
    exchange();
    EXPECT_EQ(Allocations::Of(exchange).count, 0U);
}

INSTANTIATE_TEST_SUITE_P(Sizes, ExchangeSteadyTest, testing::Values(1, 10, 100, 1000));

} // namespace
