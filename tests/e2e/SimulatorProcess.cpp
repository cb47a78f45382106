#include "e2e/SimulatorProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <thread>

extern char** environ;

namespace {

using std::chrono::steady_clock;
constexpr std::chrono::seconds kDeadline(60);

void check(int error, const char* what) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

struct Pipe {
    Pipe() {
        if (::pipe2(ends, O_CLOEXEC) == -1) {
            throw std::system_error(errno, std::generic_category(), "pipe2");
        }
    }
    int ends[2];
};

} // namespace

SimulatorProcess::SimulatorProcess(std::vector<std::string> extraArguments)
    : workingDirectory(std::filesystem::current_path()) {
    spawn(std::move(extraArguments));
    Ask("frames");
}

SimulatorProcess::SimulatorProcess(WithoutWaiting)
    : workingDirectory(std::filesystem::current_path()) {
    spawn({});
}

std::unique_ptr<SimulatorProcess> SimulatorProcess::StartOnly() {
    return std::unique_ptr<SimulatorProcess>(new SimulatorProcess(WithoutWaiting{}));
}

void SimulatorProcess::spawn(std::vector<std::string> extraArguments) {
    // A simulator that ended must be seen as such and not end the test by a signal.
    std::signal(SIGPIPE, SIG_IGN);
    std::vector<std::string> arguments{HEADLESS_SIM, PLUGIN, "--console", "--paused"};
    arguments.insert(arguments.end(), extraArguments.begin(), extraArguments.end());
    const Pipe toChild;
    const Pipe fromChild;
    posix_spawn_file_actions_t actions;
    check(posix_spawn_file_actions_init(&actions), "posix_spawn_file_actions_init");
    check(posix_spawn_file_actions_adddup2(&actions, toChild.ends[0], STDIN_FILENO), "stdin");
    check(posix_spawn_file_actions_adddup2(&actions, fromChild.ends[1], STDOUT_FILENO), "stdout");
    // The plugin must live with the default: a broken connection kills by signal.
    posix_spawnattr_t attributes;
    check(posix_spawnattr_init(&attributes), "posix_spawnattr_init");
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    check(posix_spawnattr_setsigdefault(&attributes, &defaults), "setsigdefault");
    check(posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF), "setflags");
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    const int error = posix_spawn(&pid, argv[0], &actions, &attributes, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    ::close(toChild.ends[0]);
    ::close(fromChild.ends[1]);
    input = toChild.ends[1];
    outputPipe = fromChild.ends[0];
    check(error, argv[0]);
}

SimulatorProcess::~SimulatorProcess() {
    if (pid != -1) {
        ::kill(pid, SIGKILL);
        ::waitpid(pid, nullptr, 0);
    }
    ::close(input);
    ::close(outputPipe);
}

std::string SimulatorProcess::Ask(const std::string& command) {
    Tell(command);
    return takeLine();
}

void SimulatorProcess::Tell(const std::string& command) {
    const std::string line = command + "\n";
    if (::write(input, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        throw std::runtime_error("the simulator takes no more commands: " + command);
    }
}

void SimulatorProcess::Step(int frames) {
    const std::string reply = Ask("step " + std::to_string(frames));
    if (!reply.starts_with("frame ")) {
        throw std::runtime_error("step was answered with: " + reply);
    }
}

long SimulatorProcess::AskNumber(const std::string& command) {
    const std::string reply = Ask(command);
    const std::size_t digits = reply.find_first_of("0123456789");
    if (digits == std::string::npos) {
        throw std::runtime_error(command + " was answered with: " + reply);
    }
    return std::stol(reply.substr(digits));
}

std::string SimulatorProcess::Get(const std::string& dataref) {
    const std::string reply = Ask("get " + dataref);
    const std::string expected = dataref + " = ";
    if (!reply.starts_with(expected)) {
        throw std::runtime_error("get was answered with: " + reply);
    }
    return reply.substr(expected.size());
}

int SimulatorProcess::Quit() {
    Tell("quit");
    return WaitForEnd();
}

int SimulatorProcess::WaitForEnd() {
    while (readMore()) {
    }
    output += unread;
    int status = 0;
    const auto deadline = steady_clock::now() + kDeadline;
    while (::waitpid(pid, &status, WNOHANG) != pid) {
        if (steady_clock::now() > deadline) {
            throw std::runtime_error("the simulator does not end");
        }
        std::this_thread::yield();
    }
    pid = -1;
    return status;
}

bool SimulatorProcess::readMore() {
    pollfd readable{outputPipe, POLLIN, 0};
    const int timeoutMs = static_cast<int>(std::chrono::milliseconds(kDeadline).count());
    if (::poll(&readable, 1, timeoutMs) <= 0) {
        throw std::runtime_error("the simulator does not answer");
    }
    char buffer[4096];
    const ssize_t count = ::read(outputPipe, buffer, sizeof(buffer));
    if (count > 0) {
        unread.append(buffer, static_cast<std::size_t>(count));
    }
    return count > 0;
}

std::string SimulatorProcess::takeLine() {
    std::size_t end = 0;
    while ((end = unread.find('\n')) == std::string::npos) {
        if (!readMore()) {
            throw std::runtime_error("the simulator ended; its log ends with: " + LastLogMessage());
        }
    }
    const std::string line = unread.substr(0, end);
    unread.erase(0, end + 1);
    return line;
}

std::string SimulatorProcess::LogText() const {
    const std::ifstream file(workingDirectory / "Log.txt");
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> SimulatorProcess::LogLines() const {
    std::istringstream text(LogText());
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string SimulatorProcess::LastLogMessage() const {
    const std::vector<std::string> lines = LogLines();
    return lines.empty() ? std::string() : messageOf(lines.back());
}

std::string messageOf(const std::string& logLine) {
    std::size_t position = 0;
    for (int field = 0; field < 3; ++field) {
        position = logLine.find(' ', position);
        if (position == std::string::npos) {
            return logLine;
        }
        ++position;
    }
    return logLine.substr(position);
}
