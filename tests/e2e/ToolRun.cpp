#include "e2e/ToolRun.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <string_view>
#include <system_error>

extern char** environ;

namespace {

using std::chrono::steady_clock;
constexpr std::chrono::seconds kDeadline(30);

void check(int error, const char* what) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

// The end that the test reads, and the one that the tool writes to.
struct Channel {
    int ours = -1;
    int theirs = -1;
};

Channel makePipe() {
    std::array<int, 2> ends{};
    check(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "pipe2");
    return {ends[0], ends[1]};
}

Channel makeTerminal() {
    Channel channel;
    winsize size{};
    size.ws_row = 24;
    size.ws_col = 100;
    check(::openpty(&channel.ours, &channel.theirs, nullptr, nullptr, &size) == 0 ? 0 : errno,
          "openpty");
    ::fcntl(channel.ours, F_SETFD, FD_CLOEXEC);
    ::fcntl(channel.theirs, F_SETFD, FD_CLOEXEC);
    return channel;
}

// Small enough for a pipe's buffer, so that nobody has to wait.
int inputOf(const std::string& text) {
    const Channel channel = makePipe();
    const ssize_t written = ::write(channel.theirs, text.data(), text.size());
    ::close(channel.theirs);
    if (written != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error("the input is too long");
    }
    return channel.ours;
}

std::vector<std::string> environmentOf(const ToolSetting& setting) {
    std::vector<std::string> environment;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string_view text(*variable);
        const bool isOurs = text.starts_with("TERM=") || text.starts_with("NO_COLOR=") ||
                            text.starts_with("LC_") || text.starts_with("LANG");
        if (!isOurs) {
            environment.emplace_back(text);
        }
    }
    environment.insert(environment.end(), setting.environment.begin(), setting.environment.end());
    return environment;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

ToolRun::ToolRun(std::vector<std::string> arguments, ToolSetting setting) {
    spawn(std::move(arguments), setting);
}

ToolRun::~ToolRun() {
    if (pid != -1) {
        ::kill(pid, SIGKILL);
        ::waitpid(pid, nullptr, 0);
    }
    CloseOut();
    ::close(errEnd);
}

void ToolRun::spawn(std::vector<std::string> arguments, const ToolSetting& setting) {
    const std::string program = setting.program.empty() ? ORVANE_TOOL : setting.program;
    arguments.insert(arguments.begin(), program);
    std::vector<std::string> environment = environmentOf(setting);
    const Channel outChannel = setting.hasTerminal ? makeTerminal() : makePipe();
    const Channel errChannel = setting.hasErrTerminal ? makeTerminal() : makePipe();
    const int input = inputOf(setting.input);
    outEnd = outChannel.ours;
    errEnd = errChannel.ours;
    posix_spawn_file_actions_t actions;
    check(posix_spawn_file_actions_init(&actions), "posix_spawn_file_actions_init");
    check(posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO), "stdin");
    check(posix_spawn_file_actions_adddup2(&actions, outChannel.theirs, STDOUT_FILENO), "stdout");
    check(posix_spawn_file_actions_adddup2(&actions, errChannel.theirs, STDERR_FILENO), "stderr");
    if (setting.hasFullDisk) {
        check(posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/full", O_WRONLY, 0),
              "/dev/full");
    }
    posix_spawnattr_t attributes;
    check(posix_spawnattr_init(&attributes), "posix_spawnattr_init");
    if (setting.hasTerminal) {
        check(posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP), "process group");
    }
    const int error = posix_spawn(&pid, program.c_str(), &actions, &attributes,
                                  pointersTo(arguments).data(), pointersTo(environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    ::close(input);
    ::close(outChannel.theirs);
    ::close(errChannel.theirs);
    check(error, program.c_str());
}

void ToolRun::WaitForOut(const std::string& text, const std::function<void()>& step) {
    waitUntil([&] { return out.find(text) != std::string::npos; }, step, "prints: " + text);
}

void ToolRun::WaitForOut(const std::string& text, std::size_t from) {
    waitUntil([&] { return out.find(text, from) != std::string::npos; }, {}, "prints: " + text);
}

void ToolRun::WaitForErr(const std::string& text, const std::function<void()>& step) {
    waitUntil([&] { return err.find(text) != std::string::npos; }, step, "complains: " + text);
}

ToolResult ToolRun::Wait(const std::function<void()>& step) {
    waitUntil([&] { return hasEnded(); }, step, "ends");
    receive(0);
    return {exitCode, out, err};
}

void ToolRun::Signal(int signal) const {
    // Without a process, the system would take it for everybody's.
    if (pid == -1) {
        throw std::runtime_error("orvane has ended already");
    }
    ::kill(pid, signal);
}

void ToolRun::WaitUntilStopped() {
    waitUntil([&] { return hasStopped(); }, {}, "stops");
    receive(0);
}

void ToolRun::Type(const std::string& keys) const {
    if (::write(outEnd, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        throw std::runtime_error("the terminal does not take what is typed");
    }
}

bool ToolRun::HasEcho() const {
    termios settings{};
    check(::tcgetattr(outEnd, &settings) == 0 ? 0 : errno, "tcgetattr");
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
    const auto deadline = steady_clock::now() + kDeadline;
    while (!condition()) {
        if (steady_clock::now() > deadline) {
            throw std::runtime_error("orvane never " + what + "\nprinted: " + out +
                                     "\ncomplained: " + err);
        }
        if (step) {
            step();
        }
        receive(kWaitMs);
    }
}

// Takes in what is there, and waits for it if there is nothing yet.
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

bool ToolRun::hasEnded() {
    int status = 0;
    if (pid != -1 && ::waitpid(pid, &status, WNOHANG) == pid) {
        pid = -1;
        exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    return pid == -1;
}

bool ToolRun::hasStopped() {
    int status = 0;
    if (::waitpid(pid, &status, WNOHANG | WUNTRACED) != pid) {
        return false;
    }
    if (!WIFSTOPPED(status)) {
        pid = -1;
        throw std::runtime_error("orvane ended instead of stopping");
    }
    return true;
}

ToolResult runTool(std::vector<std::string> arguments, ToolSetting setting) {
    return ToolRun(std::move(arguments), std::move(setting)).Wait();
}
