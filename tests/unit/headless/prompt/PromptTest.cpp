#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "support/ChildProcess.h"
#include "support/Deadline.h"
#include "support/PseudoTerminal.h"

using ::testing::HasSubstr;

namespace {

constexpr const char* kPrompt = "headless-sim> ";

// The program at a terminal, at which the test sits.
class PromptTest : public ::testing::Test {
protected:
    void start(const std::vector<std::string>& options) {
        std::vector<std::string> arguments{HEADLESS_SIM, FAKE_PLUGIN, "--console", "--log",
                                           folder.Path("Log.txt")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const int descriptor = terminal.FileDescriptor();
        process = std::make_unique<ChildProcess>(
            arguments, ChildProcess::Setting{.input = descriptor,
                                             .output = descriptor,
                                             .environment = std::vector<std::string>{
                                                 "TERM=xterm", "HOME=" + folder.Path("")}});
    }

    void type(const std::string& keys) {
        ASSERT_EQ(::write(terminal.UserDescriptor(), keys.data(), keys.size()),
                  static_cast<ssize_t>(keys.size()));
    }

    // Waits until that has appeared after what was waited for before.
    void waitFor(const std::string& text) {
        EXPECT_TRUE(driveUntil([&] { look(); },
                               [&] { return screen.find(text, seen) != std::string::npos; }))
            << screen;
        seen = screen.find(text, seen) + text.size();
    }

    void say(const std::string& keys, const std::string& reply) {
        type(keys);
        waitFor(reply);
        waitFor(kPrompt);
    }

    bool hasEcho() const {
        termios settings{};
        ::tcgetattr(terminal.FileDescriptor(), &settings);
        return (settings.c_lflag & ECHO) != 0;
    }

    TemporaryFolder folder;
    PseudoTerminal terminal;
    std::unique_ptr<ChildProcess> process;

private:
    void look() {
        pollfd waited{terminal.UserDescriptor(), POLLIN, 0};
        char bytes[4096];
        if (::poll(&waited, 1, 50) > 0) {
            const ssize_t count = ::read(terminal.UserDescriptor(), bytes, sizeof bytes);
            screen.append(bytes, count > 0 ? static_cast<std::size_t>(count) : 0);
        }
    }

    std::string screen;
    std::size_t seen = 0;
};

TEST_F(PromptTest, AnswersWhatIsTyped) {
    start({"--paused"});
    waitFor(kPrompt);
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
    start({"--paused"});
    waitFor(kPrompt);
    type("ge\tfa\tcou\t");
    waitFor("fake/counter ");
    say("\r", "fake/counter = 0");
    type("press fake/\t");
    waitFor("fake/command ");
    say("\r", "ok");
    type("quit\r");
    process->WaitForEnd();
    EXPECT_THAT(folder.Read("Log.txt"), HasSubstr("command phase 0\n"));
}

TEST_F(PromptTest, RemembersWhatWasTypedTheLastTimeToo) {
    const std::string up = "\x1b[A";
    start({"--paused"});
    waitFor(kPrompt);
    say("step 2\r", "frame 2");
    say(up + "\r", "frame 4");
    type("\x04");
    process->WaitForEnd();
    EXPECT_EQ(process->ExitCode(), 0);
    EXPECT_THAT(folder.Read(".headless-sim_history"), HasSubstr("step 2\n"));
    start({"--paused"});
    waitFor(kPrompt);
    say(up + "\r", "frame 2");
    type("quit\r");
    process->WaitForEnd();
}

TEST_F(PromptTest, FliesOnWhileSomebodyTypes) {
    start({"--duration", "0.5", "--hz", "100"});
    waitFor(kPrompt);
    type("get fake/cou");
    waitFor("frames 50, ");
    process->WaitForEnd();
    EXPECT_EQ(process->ExitCode(), 0);
}

TEST_F(PromptTest, GivesTheTerminalBack) {
    start({"--paused"});
    waitFor(kPrompt);
    EXPECT_FALSE(hasEcho());
    process->Signal(SIGINT);
    waitFor("frames 0, ");
    process->WaitForEnd();
    EXPECT_TRUE(hasEcho());
}

} // namespace
