#include "tools/orvane/terminal/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

#include <fmt/core.h>

namespace orvane::tool {

namespace {

constexpr std::size_t kDefaultColumns = 80;
constexpr std::size_t kDefaultRows = 24;

std::string_view environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

bool canMoveTheCursor(int fileDescriptor) {
    const std::string_view type = environment("TERM");
    return ::isatty(fileDescriptor) == 1 && !type.empty() && type != "dumb";
}

// The first one that is set decides, as in the C library.
bool isUnicodeLocale() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (const std::string_view locale = environment(name); !locale.empty()) {
            return locale.find("UTF-8") != std::string_view::npos ||
                   locale.find("utf8") != std::string_view::npos;
        }
    }
    return false;
}

winsize sizeOf(int fileDescriptor) {
    winsize size{};
    ::ioctl(fileDescriptor, TIOCGWINSZ, &size);
    return size;
}

} // namespace

Terminal::Terminal(int fileDescriptor)
    : fileDescriptor(fileDescriptor),
      isTerminal(canMoveTheCursor(fileDescriptor)),
      mayColour(isTerminal && environment("NO_COLOR").empty()),
      knowsUnicode(isUnicodeLocale()) {}

std::size_t Terminal::Columns() const {
    const winsize size = sizeOf(fileDescriptor);
    return size.ws_col > 0 ? size.ws_col : kDefaultColumns;
}

std::size_t Terminal::Rows() const {
    const winsize size = sizeOf(fileDescriptor);
    return size.ws_row > 0 ? size.ws_row : kDefaultRows;
}

std::string Terminal::Bold(std::string_view text) const {
    return mayColour ? fmt::format("\x1b[1m{}\x1b[0m", text) : std::string(text);
}

} // namespace orvane::tool
