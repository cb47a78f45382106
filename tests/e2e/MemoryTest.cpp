#include <string>

#include "e2e/EndToEndTest.h"

namespace {

class MemoryTest : public EndToEndTest {};

// The connection's buffers span a gigabyte; a buffer that crept through it would show at once.
TEST_F(MemoryTest, StaysWhereItWasHoweverLongAConnectionLives) {
    startSimulator();
    TestClient client;
    client.Exchange(*simulator,
                    tarnel(definitionsMessage(
                        {}, {{.id = 1, .name = "test/many_floats", .type = 4, .count = 1000}})));
    const Bytes poll = tarnel(dataMessage({}));
    const auto exchange = [&](int times) {
        for (int i = 0; i < times; ++i) {
            client.Send(poll);
            ASSERT_EQ(client.Answer(*simulator).size(), 8 + 4000 + 12U);
        }
    };
    exchange(1000);
    const long before = simulator->AskNumber("rss");
    exchange(20000);
    const long after = simulator->AskNumber("rss");
    // 80 MB went out; kilobytes.
    EXPECT_LT(after - before, 1024);
}

} // namespace
