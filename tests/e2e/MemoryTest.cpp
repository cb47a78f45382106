#include <sstream>
#include <string>

#include "e2e/EndToEndTest.h"
#include "support/Text.h"

namespace {

class MemoryTest : public EndToEndTest {
protected:
    // The minor page faults of the simulator's process so far.
    long minorFaults() const {
        const std::string text = contentOf("/proc/" + std::to_string(simulator->Pid()) + "/stat");
        // After the program's name, which may hold anything, eight fields come first.
        std::istringstream fields(text.substr(text.rfind(')') + 1));
        std::string skipped;
        for (int i = 0; i < 7; ++i) {
            fields >> skipped;
        }
        long faults = -1;
        fields >> faults;
        return faults;
    }
};

// The connection's buffers span a gigabyte; a position that moved through it would show at once.
TEST_F(MemoryTest, StaysConstantHoweverLongAConnectionLives) {
    startSimulator();
    TestClient client;
    client.Exchange(*simulator,
                    tarnelRequest(definitionsMessage(
                        {}, {{.id = 1, .name = "test/many_floats", .type = 4, .count = 1000}})));
    const Bytes poll = tarnelRequest(dataMessage({}));
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

// 400 MB go out after the first thousand exchanges, more than a buffer of the connection holds.
TEST_F(MemoryTest, TouchesNoNewPagesHoweverLongAConnectionLives) {
    startSimulator();
    const long beforeTheClient = minorFaults();
    TestClient client;
    client.Exchange(*simulator,
                    tarnelRequest(definitionsMessage(
                        {{.action = 1, .targetType = 1, .target = "test/int"}},
                        {{.id = 1, .name = "test/many_floats", .type = 4, .count = 1000}})));
    EXPECT_GT(minorFaults(), beforeTheClient);
    const Bytes request = tarnelRequest(dataMessage({{1, 1}}));
    const auto faultsOf = [&](int times) {
        const long before = minorFaults();
        for (int i = 0; i < times; ++i) {
            client.Send(request);
            EXPECT_EQ(client.Answer(*simulator).size(), 8 + 4000 + 12U);
        }
        return minorFaults() - before;
    };
    faultsOf(1000);
    // One page per thousand exchanges, the simulator's own included.
    EXPECT_LE(faultsOf(99'000), 99);
}

} // namespace
