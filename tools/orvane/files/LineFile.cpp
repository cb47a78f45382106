#include "tools/orvane/files/LineFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

constexpr mode_t kDefaultMode = 0666;

ssize_t writeOnce(int file, std::string_view text) {
    ssize_t written = 0;
    do {
        written = ::write(file, text.data(), text.size());
    } while (written == -1 && errno == EINTR);
    return written;
}

} // namespace

LineFile::LineFile(const std::string& path, Existing existing)
    : name(path == "-" ? "standard output" : path) {
    if (path == "-") {
        file = STDOUT_FILENO;
        return;
    }
    const int whenThere = existing == Existing::Keep ? O_EXCL : O_TRUNC;
    file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | whenThere, kDefaultMode);
    if (file == -1) {
        const char* const advice = errno == EEXIST ? " (--force overwrites it)" : "";
        throw Failure(ExitCode::WrongUsage,
                      fmt::format("{}: {}{}", path, std::strerror(errno), advice));
    }
}

LineFile::~LineFile() {
    if (!isStandardOutput()) {
        ::close(file);
    }
}

bool LineFile::IsTerminal() const {
    return ::isatty(file) == 1;
}

void LineFile::Append(std::string_view line) {
    const std::string whole = std::string(line) + '\n';
    if (isStandardOutput()) {
        printData(line);
    } else {
        write(whole);
    }
    bytes += whole.size();
}

void LineFile::write(const std::string& line) const {
    const ssize_t written = writeOnce(file, line);
    if (written == static_cast<ssize_t>(line.size())) {
        return;
    }
    const int error = written == -1 ? errno : ENOSPC;
    if (written > 0) {
        [[maybe_unused]] const int cut = ::ftruncate(file, static_cast<off_t>(bytes));
    }
    throw Failure(ExitCode::WrongUsage, fmt::format("{}: {}", name, std::strerror(error)));
}

} // namespace orvane::tool
