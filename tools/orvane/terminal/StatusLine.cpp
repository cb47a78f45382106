#include "tools/orvane/terminal/StatusLine.h"

#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;
constexpr std::chrono::milliseconds kInterval(100);
constexpr const char* kToBeginAndClear = "\r\x1b[K";

} // namespace

StatusLine::StatusLine() : terminal(STDERR_FILENO), shownAt(steady_clock::now() - kInterval) {}

StatusLine::~StatusLine() {
    Clear();
}

bool StatusLine::IsDue() const {
    return terminal.IsTerminal() && steady_clock::now() - shownAt >= kInterval;
}

void StatusLine::Show(const std::string& text) {
    if (!terminal.IsTerminal()) {
        return;
    }
    // The last column stays free: some terminals begin a new line after it.
    const std::string shown = printable(text).substr(0, terminal.Columns() - 1);
    fmt::print(stderr, "{}{}", kToBeginAndClear, shown);
    shownAt = steady_clock::now();
    isShown = true;
}

void StatusLine::Clear() {
    if (isShown) {
        std::fputs(kToBeginAndClear, stderr);
        isShown = false;
    }
}

} // namespace orvane::tool
