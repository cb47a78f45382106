#include "tools/orvane/terminal/StatusLine.h"

#include <unistd.h>

#include "tools/orvane/files/Output.h"
#include "tools/orvane/terminal/DisplayWidth.h"
#include "tools/orvane/terminal/PrintableText.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;
constexpr std::chrono::milliseconds kInterval(100);

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
    // The last column stays free: some terminals wrap after it.
    showStatus(beginningOf(printable(text), terminal.Columns() - 1));
    shownAt = steady_clock::now();
}

void StatusLine::Clear() {
    clearStatus();
}

} // namespace orvane::tool
