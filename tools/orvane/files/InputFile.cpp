#include "tools/orvane/files/InputFile.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"

namespace orvane::tool {

namespace {

// How long an interrupt just before the wait may go unnoticed.
constexpr int kWaitMs = 100;
constexpr std::size_t kBlock = 65'536;

[[noreturn]] void failOn(const std::string& name) {
    throw Failure(ExitCode::WrongUsage, fmt::format("{}: {}", name, std::strerror(errno)));
}

} // namespace

InputFile::InputFile(const std::string& path) : name(path == "-" ? "standard input" : path) {
    file = path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file == -1) {
        failOn(name);
    }
}

InputFile::~InputFile() {
    if (file != STDIN_FILENO) {
        ::close(file);
    }
}

bool InputFile::ReadInto(std::string& text) {
    while (!isAtEnd && !isInterrupted()) {
        pollfd readable{.fd = file, .events = POLLIN, .revents = 0};
        if (::poll(&readable, 1, kWaitMs) <= 0) {
            continue;
        }
        std::array<char, kBlock> block{};
        const ssize_t count = ::read(file, block.data(), block.size());
        if (count > 0) {
            text.append(block.data(), static_cast<std::size_t>(count));
            return true;
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            failOn(name);
        }
        isAtEnd = count == 0;
    }
    return false;
}

std::string readWholeFile(const std::string& path) {
    InputFile file(path);
    std::string text;
    while (file.ReadInto(text)) {
    }
    if (!file.IsAtEnd()) {
        throw Failure(ExitCode::TimedOut, "interrupted before the end of the file");
    }
    return text;
}

} // namespace orvane::tool
