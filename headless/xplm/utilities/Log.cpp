#include "headless/xplm/utilities/Log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <sstream>
#include <stdexcept>

namespace headless {

namespace {

constexpr mode_t kFileMode = 0644;

void writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return; // A full disk must not end the simulation.
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace

Log::~Log() {
    if (file >= 0) {
        ::close(file);
    }
}

void Log::OpenFile(const std::string& path) {
    const int opened =
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, kFileMode);
    if (opened < 0) {
        throw std::runtime_error(path + ": cannot write the log: " + std::strerror(errno));
    }
    if (file >= 0) {
        ::close(file);
    }
    file = opened;
}

void Log::Write(std::string_view added) {
    const std::lock_guard<std::mutex> lock(mutex);
    tail += added;
    if (tail.size() > 2 * kTail) {
        tail.erase(0, tail.size() - kTail);
    }
    if (keep) {
        text += added;
    }
    if (file >= 0) {
        writeAll(file, added);
    }
    if (echo) {
        writeAll(STDERR_FILENO, added);
    }
}

std::string_view Log::LastLine() const {
    std::string_view line = tail;
    if (!line.empty() && line.back() == '\n') {
        line.remove_suffix(1);
    }
    return line.substr(line.rfind('\n') + 1);
}

std::vector<std::string> Log::Lines() const {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace headless
