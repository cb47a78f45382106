#include "headless/host/LineReader.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace headless {

namespace {

constexpr std::size_t kChunk = 4096;

// Another reader of the descriptor may have made it non-blocking.
bool isPassing(int error) {
    return error == EINTR || error == EAGAIN;
}

} // namespace

bool isReadable(int descriptor) {
    pollfd waited{descriptor, POLLIN, 0};
    return ::poll(&waited, 1, 0) > 0;
}

void LineReader::Fill() {
    std::array<char, kChunk> chunk{};
    while (!ended && isReadable(descriptor)) {
        const ssize_t count = ::read(descriptor, chunk.data(), chunk.size());
        if (count > 0) {
            pending.append(chunk.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || !isPassing(errno)) {
            ended = true;
        } else if (errno != EINTR) {
            return;
        }
    }
}

std::optional<std::string> LineReader::Next() {
    const std::size_t newline = pending.find('\n');
    if (newline == std::string::npos && (!ended || pending.empty())) {
        return std::nullopt;
    }
    std::string line = pending.substr(0, newline);
    pending.erase(0, newline == std::string::npos ? pending.size() : newline + 1);
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    return line;
}

} // namespace headless
