#include "tools/demo/LiveTable.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace demo {

namespace {

constexpr std::chrono::milliseconds kRedrawInterval(66);
constexpr std::chrono::milliseconds kLineInterval(500);

bool canRedraw() {
    const char* type = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && type != nullptr && std::string_view(type) != "dumb";
}

bool mayColour() {
    const char* refused = std::getenv("NO_COLOR");
    return refused == nullptr || *refused == '\0';
}

// A line that is wider would wrap, and the table could not be redrawn over itself.
std::size_t terminalWidth() {
    winsize size{};
    const bool known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : std::string::npos;
}

std::string textOf(float number) {
    return fmt::format("{:.{}f}", number, std::abs(number) >= 100.0F ? 1 : 3);
}

std::string textOf(std::int32_t number) {
    return fmt::format("{}", number);
}

template <typename Element>
std::string textOf(const std::vector<Element>& elements) {
    std::string text;
    for (const Element& element : elements) {
        text += fmt::format("{}{}", text.empty() ? "" : "/", textOf(element));
    }
    return text;
}

std::string textOf(bool pressed) {
    return pressed ? "pressed" : "-";
}

std::string textOf(std::monostate /*nothing*/) {
    return "?";
}

std::string withoutTrailingBlanks(const std::string& text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

// Wide enough for the name and the longest of the values in a plain line.
std::size_t columnWidth(const PanelRow& row) {
    constexpr std::size_t kUsual = 7;
    constexpr std::size_t kArray = 12;
    const bool array = row.output && row.output->elementCount > 0;
    return std::max(array ? kArray : kUsual, row.name.size());
}

} // namespace

LiveTable::LiveTable(const Panel& shownPanel)
    : panel(shownPanel), terminal(canRedraw()), bold(terminal && mayColour()) {}

void LiveTable::Show(const Progress& progress, std::span<const DataItem> sent,
                     const OutputStream& stream, const std::vector<ShownValue>& shownGauges) {
    shown = progress;
    gauges = shownGauges;
    cells = cellsOf(sent, stream);
    stale = true;
    const auto interval = terminal ? kRedrawInterval : kLineInterval;
    if (!drawnAt || Clock::now() - *drawnAt >= interval) {
        draw();
    }
}

void LiveTable::Finish() {
    if (stale) {
        draw();
    }
    linesDrawn = 0;
}

LiveTable::Cells LiveTable::cellsOf(std::span<const DataItem> sent,
                                    const OutputStream& stream) const {
    Cells result;
    auto item = sent.begin();
    auto value = stream.outputs.begin();
    for (const PanelRow& row : panel.Rows()) {
        result.sent.push_back(row.control ? textOf((item++)->value) : "");
        result.received.push_back(
            row.output ? std::visit([](const auto& each) { return textOf(each); }, (value++)->value)
                       : "");
    }
    return result;
}

void LiveTable::draw() {
    if (terminal) {
        drawInPlace();
    } else {
        drawLines();
    }
    std::fflush(stdout);
    drawnAt = Clock::now();
    stale = false;
}

void LiveTable::drawInPlace() {
    width = terminalWidth();
    if (linesDrawn > 0) {
        fmt::print("\x1b[{}A", linesDrawn);
    }
    linesDrawn = 0;
    line(fmt::format("  {:4.1f} of {:.1f} s   {} exchanges   last round trip {:.1f} ms",
                     shown.seconds, shown.secondsWanted, shown.exchanges,
                     std::chrono::duration<double, std::milli>(shown.lastRoundTrip).count()),
         false);
    line("", false);
    line(fmt::format("  {:<9} {:>6} {:>13}   {}", "Tarnel", "in", "back", "how"), true);
    for (std::size_t i = 0; i < panel.Rows().size(); ++i) {
        const PanelRow& row = panel.Rows()[i];
        rowInPlace({row.name, cells.sent[i], cells.received[i], row.way});
    }
    line(fmt::format("  {:<9}", "Velmar"), true);
    for (const ShownValue& gauge : gauges) {
        rowInPlace(gauge);
    }
}

void LiveTable::rowInPlace(const ShownValue& row) {
    line(fmt::format("  {:<9} {:>6} {:>13}   {}", row.name, row.sent, row.received, row.way),
         false);
}

void LiveTable::drawLines() {
    std::string names = fmt::format("{:>11}", "");
    std::string in = fmt::format("{:5.1f} s  in ", shown.seconds);
    std::string back = fmt::format("{:>11}", "back");
    for (std::size_t i = 0; i < panel.Rows().size(); ++i) {
        const std::size_t column = columnWidth(panel.Rows()[i]);
        names += fmt::format(" {:>{}}", panel.Rows()[i].name, column);
        in += fmt::format(" {:>{}}", cells.sent[i], column);
        back += fmt::format(" {:>{}}", cells.received[i], column);
    }
    if (!drawnAt) {
        explain();
        fmt::print("{}\n", names);
    }
    std::string second = fmt::format("{:>11}", "velmar");
    for (const ShownValue& gauge : gauges) {
        const char* const arrow = gauge.sent.empty() ? "" : " -> ";
        second += fmt::format(" {} {}{}{}", gauge.name, gauge.sent, arrow, gauge.received);
    }
    fmt::print("{}\n{}\n{}\n", withoutTrailingBlanks(in), back, second);
}

void LiveTable::explain() const {
    for (const PanelRow& row : panel.Rows()) {
        fmt::print("  {:<9} {}\n", row.name, row.way);
    }
    fmt::print("\n");
}

void LiveTable::line(const std::string& text, bool emphasised) {
    const std::string visible = text.substr(0, width);
    if (emphasised && bold) {
        fmt::print("\x1b[1m{}\x1b[0m\x1b[K\n", visible);
    } else {
        fmt::print("{}\x1b[K\n", visible);
    }
    ++linesDrawn;
}

} // namespace demo
