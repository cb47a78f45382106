#include <sys/wait.h>

#include <iostream>
#include <memory>
#include <string>

#include "e2e/EndToEndTest.h"

namespace {

constexpr int kWarmUp = 10;
constexpr int kTimes = 100;

// Whichever way the plugin is stopped and started, it must leave nothing behind.
class LifecycleEnduranceTest : public EndToEndTest {
protected:
    LifecycleEnduranceTest() { startSimulator(); }

    // Everything a client can make the plugin keep: definitions, datarefs, commands.
    static Bytes definitions() {
        return tarnelRequest(definitionsMessage(
            {{.action = 1, .targetType = RecordType::Int, .target = "test/int"},
             {.action = 1, .targetType = RecordType::Command, .hold = 1, .target = "test/hold"}},
            {{.id = 1, .name = "kyr/numbers", .type = RecordType::FloatArray, .count = 1500},
             {.id = 2, .name = "kyr/test_command", .type = RecordType::Command}}));
    }

    void expectServed(TestClient& client) {
        const Bytes answer = client.Exchange(*simulator, tarnelRequest(versionMessage()));
        ASSERT_EQ(toHex(answer), "B1 6B 00 B5 01 00 07 0A 06 00 00 00");
        client.Exchange(*simulator, definitions());
        client.Exchange(*simulator, tarnelRequest(dataMessage({{1, 1}})));
    }

    void expectOk(const std::string& command) {
        const std::string reply = simulator->Ask(command);
        ASSERT_EQ(reply, "ok") << command;
    }

    // Descriptors and memory are as after the first few rounds. The simulator itself keeps a
    // kilobyte per round: the handles of unregistered datarefs stay valid.
    template <class Round>
    void expectFlat(Round round) {
        for (int i = 0; i < kWarmUp && !HasFatalFailure(); ++i) {
            round();
        }
        const long filesBefore = simulator->AskNumber("fds");
        const long kilobytesBefore = simulator->AskNumber("rss");
        for (int i = 0; i < kTimes && !HasFatalFailure(); ++i) {
            round();
        }
        EXPECT_EQ(simulator->AskNumber("fds"), filesBefore);
#ifndef ORVANE_E2E_SANITIZED
        EXPECT_LT(simulator->AskNumber("rss") - kilobytesBefore, 512);
#endif
        std::cout << "fds " << filesBefore << ", rss " << kilobytesBefore << " -> "
                  << simulator->AskNumber("rss") << " kB\n";
    }

    // Under LeakSanitizer a leak changes the status.
    void expectCleanEnd() {
        EXPECT_EQ(simulator->LogText(), "");
        const int status = simulator->Quit();
        ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
        EXPECT_EQ(WEXITSTATUS(status), 0) << simulator->Output();
    }
};

TEST_F(LifecycleEnduranceTest, StopsAndStartsAHundredTimesUnderAConnectedClient) {
    auto client = std::make_unique<TestClient>();
    expectServed(*client);
    expectFlat([&] {
        expectOk("stop");
        EXPECT_TRUE(client->IsClosedByServer(*simulator));
        expectOk("start");
        client = std::make_unique<TestClient>();
        expectServed(*client);
    });
    expectCleanEnd();
}

TEST_F(LifecycleEnduranceTest, ServesOnThroughAHundredDisablesAndEnables) {
    TestClient client;
    expectFlat([&] {
        expectOk("disable");
        simulator->Step(1);
        expectOk("enable");
        expectServed(client);
    });
    expectCleanEnd();
}

#ifndef ORVANE_E2E_SANITIZED

// A sanitizer keeps every library in the process. The console refuses a reload
// when the plugin's library is still mapped.
TEST_F(LifecycleEnduranceTest, LeavesTheProcessAHundredTimes) {
    expectFlat([&] {
        TestClient client;
        expectServed(client);
        expectOk("reload");
    });
    expectCleanEnd();
}

#endif

} // namespace
