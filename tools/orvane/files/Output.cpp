#include "tools/orvane/files/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/terminal/PrintableText.h"

namespace orvane::tool {

namespace {

constexpr const char* kToBeginAndClear = "\r\x1b[K";

std::size_t errorLines = 0;
bool hasStatus = false;

} // namespace

void writeOut(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EPIPE) {
            throw ReaderGone();
        } else if (errno != EINTR) {
            throw Failure(ExitCode::WrongUsage,
                          fmt::format("standard output: {}", std::strerror(errno)));
        }
    }
}

void printLine(std::string_view line) {
    writeOut(printable(line) + '\n');
}

void printData(std::string_view line) {
    writeOut((::isatty(STDOUT_FILENO) == 1 ? printable(line) : std::string(line)) + '\n');
}

void printError(std::string_view line) {
    printErrorText(printable(line) + '\n');
}

void printErrorText(std::string_view lines) {
    clearStatus();
    // There is nowhere to report a failure.
    std::fwrite(lines.data(), 1, lines.size(), stderr);
    ++errorLines;
}

void tell(std::string_view line) {
    printError(fmt::format("orvane: {}", line));
}

std::size_t errorLineCount() {
    return errorLines;
}

void showStatus(std::string_view text) {
    std::fputs(fmt::format("{}{}", kToBeginAndClear, text).c_str(), stderr);
    hasStatus = true;
}

void clearStatus() {
    if (hasStatus) {
        std::fputs(kToBeginAndClear, stderr);
        hasStatus = false;
    }
}

} // namespace orvane::tool
