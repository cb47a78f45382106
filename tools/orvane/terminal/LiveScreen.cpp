#include "tools/orvane/terminal/LiveScreen.h"

#include "tools/orvane/files/Output.h"

#include <fmt/format.h>

#include <exception>

namespace orvane::tool {

namespace {

constexpr const char* kHideCursor = "\x1b[?25l";
constexpr const char* kShowCursor = "\x1b[?25h";
constexpr const char* kClearAll = "\x1b[2J\x1b[H";
constexpr const char* kClearRestOfLine = "\x1b[K";
constexpr const char* kClearBelow = "\x1b[J";

} // namespace

LiveScreen::LiveScreen(const Terminal& terminal) : terminal(terminal) {}

LiveScreen::~LiveScreen() {
    try {
        writeOut(kShowCursor);
    } catch (const std::exception&) {
        // The terminal is gone, and its cursor with it.
    }
}

void LiveScreen::Draw(const std::vector<std::string>& lines) {
    // Lines that were drawn on a terminal of another width may be folded now.
    const bool isResized = linesDrawn > 0 && columns != terminal.Columns();
    std::string text = kHideCursor;
    if (isResized) {
        text += kClearAll;
    } else if (linesDrawn > 0) {
        text += fmt::format("\x1b[{}A\r", linesDrawn);
    }
    for (const std::string& line : lines) {
        text += line + kClearRestOfLine + "\n";
    }
    writeOut(text + kClearBelow);
    linesDrawn = lines.size();
    columns = terminal.Columns();
}

} // namespace orvane::tool
