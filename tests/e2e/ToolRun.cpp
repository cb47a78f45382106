#include "e2e/ToolRun.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string_view>

#include "support/Deadline.h"
#include "support/Sockets.h"

extern char** environ;

namespace {

Channel makeTerminal() {
    Channel channel;
    winsize size{};
    size.ws_row = 24;
    size.ws_col = 100;
    checked(::openpty(&channel.ours, &channel.theirs, nullptr, nullptr, &size), "openpty");
    ::fcntl(channel.ours, F_SETFD, FD_CLOEXEC);
    ::fcntl(channel.theirs, F_SETFD, FD_CLOEXEC);
    return channel;
}

// The text fits in a pipe's buffer, so writing does not block.
int inputOf(const std::string& text) {
    const Channel channel = pipeToChild();
    const ssize_t written = ::write(channel.ours, text.data(), text.size());
    ::close(channel.ours);
    if (written != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("the input is too long");
    }
    return channel.theirs;
}

std::vector<std::string> environmentOf(const ToolSetting& setting) {
    // A program takes the first variable of a name.
    std::vector<std::string> environment = setting.environment;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text(*variable);
        const bool isOurs = text.starts_with("TERM=") || text.starts_with("NO_COLOR=") ||
                            text.starts_with("LC_") || text.starts_with("LANG");
        if (!isOurs) {
            environment.emplace_back(text);
        }
    }
    return environment;
}

} // namespace

ToolRun::ToolRun(std::vector<std::string> arguments, const ToolSetting& setting) {
    arguments.insert(arguments.begin(), setting.program.empty() ? ORVANE_TOOL : setting.program);
    Channel outChannel = setting.hasTerminal ? makeTerminal() : pipeFromChild();
    const Channel errChannel = setting.hasErrTerminal ? makeTerminal() : pipeFromChild();
    const int input = inputOf(setting.input);
    if (setting.hasFullDisk) {
        ::close(outChannel.theirs);
        outChannel.theirs = checked(::open("/dev/full", O_WRONLY | O_CLOEXEC), "/dev/full");
    }
    outEnd = outChannel.ours;
    errEnd = errChannel.ours;
    process = std::make_unique<ChildProcess>(
        std::move(arguments), ChildProcess::Setting{.input = input,
                                                    .output = outChannel.theirs,
                                                    .errors = errChannel.theirs,
                                                    .environment = environmentOf(setting),
                                                    .hasOwnGroup = setting.hasTerminal});
    ::close(input);
    ::close(outChannel.theirs);
    ::close(errChannel.theirs);
}

ToolRun::~ToolRun() {
    process.reset();
    CloseOut();
    ::close(errEnd);
}

void ToolRun::WaitForOut(const std::string& text, const std::function<void()>& step) {
    waitUntil([&] { return out.find(text) != std::string::npos; }, step, "print: " + text);
}

void ToolRun::WaitForOut(const std::string& text, std::size_t from) {
    waitUntil([&] { return out.find(text, from) != std::string::npos; }, {}, "print: " + text);
}

void ToolRun::WaitForErr(const std::string& text, const std::function<void()>& step) {
    waitUntil([&] { return err.find(text) != std::string::npos; }, step,
              "write to standard error: " + text);
}

ToolResult ToolRun::Wait(const std::function<void()>& step) {
    waitUntil([&] { return process->HasEnded(); }, step, "end");
    receive(0);
    return {process->ExitCode(), out, err};
}

void ToolRun::WaitUntilStopped() {
    waitUntil([&] { return process->HasStopped(); }, {}, "stop");
    receive(0);
}

void ToolRun::Type(const std::string& keys) const {
    if (::write(outEnd, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        throw std::runtime_error("the terminal does not take what is typed");
    }
}

bool ToolRun::HasEcho() const {
    termios settings{};
    checked(::tcgetattr(outEnd, &settings), "tcgetattr");
    return (settings.c_lflag & ECHO) != 0;
}

void ToolRun::CloseOut() {
    if (outEnd != -1) {
        ::close(outEnd);
        outEnd = -1;
    }
}

void ToolRun::waitUntil(const std::function<bool()>& condition, const std::function<void()>& step,
                        const std::string& what) {
    constexpr int kWaitMs = 5;
    const auto wait = [&] {
        if (step) {
            step();
        }
        receive(kWaitMs);
    };
    if (!driveUntil(wait, condition)) {
        throw std::runtime_error("orvane did not " + what + "\nstandard output: " + out +
                                 "\nstandard error: " + err);
    }
}

// Reads what is there; waits if there is nothing yet.
void ToolRun::receive(int timeoutMs) {
    std::array<pollfd, 2> waited{{{outEnd, POLLIN, 0}, {errEnd, POLLIN, 0}}};
    std::array<std::string*, 2> texts{&out, &err};
    while (::poll(waited.data(), waited.size(), timeoutMs) > 0) {
        timeoutMs = 0;
        for (std::size_t i = 0; i < waited.size(); ++i) {
            std::array<char, 4096> bytes{};
            const bool readable = (waited[i].revents & (POLLIN | POLLHUP | POLLERR)) != 0;
            const ssize_t count = readable ? ::read(waited[i].fd, bytes.data(), bytes.size()) : 0;
            if (count > 0) {
                texts[i]->append(bytes.data(), static_cast<std::size_t>(count));
            } else if (readable) {
                waited[i].fd = -1; // at its end; no longer waited for
            }
        }
    }
}

ToolResult runTool(std::vector<std::string> arguments, const ToolSetting& setting) {
    return ToolRun(std::move(arguments), setting).Wait();
}
