#include "e2e/SimulatorProcess.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <stdexcept>
#include <utility>

#include "support/Text.h"

namespace {

constexpr std::chrono::seconds kDeadline(60);

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
    // Writing to a simulator that has ended must fail instead of ending the test by a signal.
    std::signal(SIGPIPE, SIG_IGN);
    std::vector<std::string> arguments{HEADLESS_SIM, PLUGIN, "--console", "--paused"};
    arguments.insert(arguments.end(), extraArguments.begin(), extraArguments.end());
    const Channel toChild = pipeToChild();
    const Channel fromChild = pipeFromChild();
    input = toChild.ours;
    outputPipe = fromChild.ours;
    process = std::make_unique<ChildProcess>(
        std::move(arguments),
        ChildProcess::Setting{.input = toChild.theirs, .output = fromChild.theirs});
    ::close(toChild.theirs);
    ::close(fromChild.theirs);
}

SimulatorProcess::~SimulatorProcess() {
    process.reset();
    ::close(input);
    ::close(outputPipe);
}

std::string SimulatorProcess::Ask(const std::string& command) {
    Send(command);
    return takeLine();
}

void SimulatorProcess::Send(const std::string& command) {
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
    Send("quit");
    return WaitForEnd();
}

int SimulatorProcess::WaitForEnd() {
    while (readMore()) {
    }
    output += unread;
    return process->WaitForEnd();
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
    const std::filesystem::path file = workingDirectory / "Log.txt";
    const std::string text = std::filesystem::exists(file) ? contentOf(file) : "";
    std::string kept;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size() - 1) + 1;
        const std::string line = text.substr(begin, end - begin);
        kept += line.starts_with("headless-sim: ") ? "" : line;
        begin = end;
    }
    return kept;
}

std::vector<std::string> SimulatorProcess::LogLines() const {
    return linesOf(LogText());
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
