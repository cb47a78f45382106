#include "tools/orvane/files/InputLines.h"

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace orvane::tool {

namespace {

// How long an interrupt that comes just before the wait may go unnoticed.
constexpr int kWaitMs = 100;
constexpr std::size_t kBlock = 65'536;

} // namespace

InputLines::InputLines(const std::string& path) : name(path == "-" ? "standard input" : path) {
    file = path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file == -1) {
        throw Failure(ExitCode::WrongUsage, fmt::format("{}: {}", name, std::strerror(errno)));
    }
}

InputLines::~InputLines() {
    if (file != STDIN_FILENO) {
        ::close(file);
    }
}

std::optional<std::string> InputLines::Next() {
    std::size_t searched = begin;
    std::size_t end = std::string::npos;
    while ((end = unread.find('\n', searched)) == std::string::npos) {
        // What was returned goes once per block, not once per line.
        unread.erase(0, std::exchange(begin, 0));
        searched = unread.size();
        if (!readMore()) {
            break;
        }
    }
    isCut = end == std::string::npos;
    if (isCut && (unread.empty() || !isAtEnd)) {
        return std::nullopt;
    }
    std::string line = unread.substr(begin, isCut ? end : end - begin);
    begin = isCut ? unread.size() : end + 1;
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    ++number;
    return line;
}

// False at the end and after an interrupt.
bool InputLines::readMore() {
    while (!isAtEnd && !isInterrupted()) {
        pollfd readable{.fd = file, .events = POLLIN, .revents = 0};
        if (::poll(&readable, 1, kWaitMs) <= 0) {
            continue;
        }
        std::array<char, kBlock> block{};
        const ssize_t count = ::read(file, block.data(), block.size());
        if (count > 0) {
            unread.append(block.data(), static_cast<std::size_t>(count));
            return true;
        }
        if (count < 0 && errno != EINTR && errno != EAGAIN) {
            throw Failure(ExitCode::WrongUsage, fmt::format("{}: {}", name, std::strerror(errno)));
        }
        isAtEnd = count == 0;
    }
    return false;
}

} // namespace orvane::tool
