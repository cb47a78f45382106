#include <csignal>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "prompt/TerminalTest.h"

using ::testing::HasSubstr;

namespace {

constexpr const char* kPrompt = "headless-sim> ";

class PromptTest : public TerminalTest {
protected:
    void startConsole(std::vector<std::string> options) {
        options.emplace_back("--console");
        start(options);
        waitFor(kPrompt);
    }

    void say(const std::string& keys, const std::string& reply) {
        type(keys);
        waitFor(reply);
        waitFor(kPrompt);
    }
};

TEST_F(PromptTest, AnswersWhatIsTyped) {
    startConsole({"--paused"});
    say("step 3\r", "frame 3");
    say("\r", "");
    say("get fake/counter\r", "fake/counter = 3");
    say("nonsense\r", "error: unknown statement \"nonsense\"; see help");
    type("quit 7\r");
    waitFor("frames 3, ");
    process->WaitForEnd();
    EXPECT_EQ(process->ExitCode(), 7);
}

TEST_F(PromptTest, CompletesNames) {
    startConsole({"--paused"});
    say("ge\tfa\tcou\t\r", "fake/counter = 0");
    say("press fake/\t\r", "ok");
    type("quit\r");
    process->WaitForEnd();
    EXPECT_THAT(folder.Read("Log.txt"), HasSubstr("command phase 0\n"));
}

TEST_F(PromptTest, RemembersWhatWasTypedTheLastTimeToo) {
    const std::string up = "\x1b[A";
    startConsole({"--paused"});
    say("step 2\r", "frame 2");
    say(up + "\r", "frame 4");
    type("\x04");
    process->WaitForEnd();
    EXPECT_EQ(process->ExitCode(), 0);
    EXPECT_THAT(folder.Read(".headless-sim_history"), HasSubstr("step\\0402\n"));
    startConsole({"--paused"});
    say(up + "\r", "frame 2");
    type("quit\r");
    process->WaitForEnd();
}

TEST_F(PromptTest, FliesOnWhileSomebodyTypes) {
    startConsole({"--duration", "0.5", "--hz", "100"});
    type("get fake/cou");
    waitFor("frames 50, ");
    process->WaitForEnd();
    EXPECT_EQ(process->ExitCode(), 0);
}

TEST_F(PromptTest, GivesTheTerminalBack) {
    startConsole({"--paused"});
    EXPECT_FALSE(hasEcho());
    process->Signal(SIGINT);
    waitFor("frames 0, ");
    process->WaitForEnd();
    EXPECT_TRUE(hasEcho());
}

TEST_F(PromptTest, GivesTheTerminalBackWhenAPluginCrashes) {
    startConsole({CRASHING_PLUGIN});
    process->WaitForEnd();
    EXPECT_EQ(process->ExitCode(), 5);
    EXPECT_TRUE(hasEcho());
}

TEST_F(PromptTest, GivesTheTerminalBackWhenTheWatchdogEndsTheRun) {
    startConsole({HANGING_PLUGIN, "--watchdog", "0.2"});
    process->WaitForEnd();
    EXPECT_EQ(process->ExitCode(), 5);
    EXPECT_TRUE(hasEcho());
}

TEST_F(PromptTest, GivesTheTerminalBackAfterASecondSignal) {
    startConsole({HANGING_PLUGIN});
    EXPECT_TRUE(driveUntil(
        [] {}, [&] { return folder.Read("Log.txt").find("it hangs") != std::string::npos; }));
    EXPECT_TRUE(driveUntil([&] { process->Signal(SIGINT); }, [&] { return process->HasEnded(); }));
    EXPECT_EQ(process->ExitCode(), 128 + SIGINT);
    EXPECT_TRUE(hasEcho());
}

} // namespace
