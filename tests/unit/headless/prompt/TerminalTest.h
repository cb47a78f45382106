#pragma once

#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/Deadline.h"
#include "support/PseudoTerminal.h"
#include "support/TemporaryDirectory.h"

// The program at a terminal, at which the test sits.
class TerminalTest : public ::testing::Test {
protected:
    void start(const std::vector<std::string>& options) {
        std::vector<std::string> arguments{HEADLESS_SIM, FAKE_PLUGIN, "--log",
                                           folder.Path("Log.txt")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const int descriptor = terminal.FileDescriptor();
        process = std::make_unique<ChildProcess>(
            arguments, ChildProcess::Setting{.input = descriptor,
                                             .output = descriptor,
                                             .errors = descriptor,
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

    bool hasEcho() const {
        termios settings{};
        ::tcgetattr(terminal.FileDescriptor(), &settings);
        return (settings.c_lflag & ECHO) != 0;
    }

    TemporaryDirectory folder;
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
