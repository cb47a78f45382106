#include "tools/orvane/terminal/LiveScreen.h"

#include <fmt/core.h>

#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

constexpr std::chrono::milliseconds kInterval(50);
constexpr const char* kClearAll = "\x1b[2J\x1b[H";
constexpr const char* kClearRestOfLine = "\x1b[K";
constexpr const char* kClearBelow = "\x1b[J";

} // namespace

LiveScreen::LiveScreen(const Terminal& terminal) : terminal(terminal) {}

bool LiveScreen::IsDue(TimePoint now) const {
    return !drawnAt || now - *drawnAt >= kInterval;
}

void LiveScreen::Draw(const std::vector<std::string>& lines, TimePoint now) {
    if (!mode) {
        mode.emplace();
    }
    std::string drawing = "\r";
    for (const std::string& line : lines) {
        drawing += line + kClearRestOfLine + "\n";
    }
    drawing += kClearBelow;
    mode->Show(moveToFirstLine() + drawing, drawing);
    drawnAt = now;
    linesDrawn = lines.size();
    columns = terminal.Columns();
    errorLinesBefore = errorLineCount();
}

std::string LiveScreen::moveToFirstLine() const {
    if (linesDrawn == 0 || errorLinesBefore != errorLineCount()) {
        return "";
    }
    // After a change of width, the drawn lines may be folded.
    const bool isResized = columns != terminal.Columns();
    return isResized ? kClearAll : fmt::format("\x1b[{}A", linesDrawn);
}

} // namespace orvane::tool
