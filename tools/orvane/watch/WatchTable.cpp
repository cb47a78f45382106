#include "tools/orvane/watch/WatchTable.h"

#include <algorithm>

#include <fmt/core.h>

#include "tools/orvane/datarefs/Numbers.h"
#include "tools/orvane/terminal/DisplayWidth.h"
#include "tools/orvane/terminal/Sparkline.h"

namespace orvane::tool {

namespace {

struct Element {
    double number = 0.0;
    std::string text;
};

// Fewer digits than a float has: they are easier to follow while they move.
Element elementOf(float number) {
    return {static_cast<double>(number), fmt::format("{:.6g}", number)};
}

template <typename Number>
Element elementOf(Number number) {
    return {static_cast<double>(number), fmt::format("{}", number)};
}

std::vector<Element> elementsOf(const velmar::Value& value) {
    std::vector<Element> elements;
    forEachNumber(value, [&](auto number) { elements.push_back(elementOf(number)); });
    return elements;
}

} // namespace

struct WatchTable::RowRange {
    std::size_t begin = 0;
    std::size_t end = 0; // one after the last
};

struct WatchTable::Widths {
    std::size_t label = 4;
    std::size_t value = 5;
    std::size_t unit = 4;
    std::size_t minimum = 3;
    std::size_t maximum = 3;
    // The rest is for the curve.
    std::size_t history = 0;
    std::size_t columns = 0;
};

void WatchTable::See(const std::vector<DatarefArgument>& datarefs,
                     const std::vector<velmar::Value>& values, WatchedNumber::TimePoint now) {
    rows.clear();
    for (std::size_t i = 0; i < datarefs.size(); ++i) {
        const DatarefArgument& dataref = datarefs[i];
        const std::vector<Element> elements = elementsOf(values[i]);
        for (std::size_t place = 0; place < elements.size(); ++place) {
            WatchedNumber& number = numbers[{dataref.name, place}];
            number.See(elements[place].number, elements[place].text, now);
            const bool isArray = dataref.size > 0;
            rows.push_back(
                {isArray ? dataref.ElementName(place) : dataref.name, dataref.unit, number});
        }
    }
}

std::vector<std::string> WatchTable::Lines(const std::string& title, const Terminal& terminal,
                                           std::size_t first) const {
    // One column stays free, since some terminals wrap after a full line; so does one row.
    const Widths used = widths(terminal.Columns() - 1);
    const RowRange shown = visibleRows(first, std::max<std::size_t>(terminal.Rows(), 5) - 3);
    std::vector<std::string> lines{std::string(beginningOf(title, used.columns)),
                                   terminal.Bold(beginningOf(header(used), used.columns))};
    for (std::size_t i = shown.begin; i < shown.end; ++i) {
        lines.push_back(line(rows[i], used, terminal));
    }
    if (shown.end - shown.begin < rows.size()) {
        std::string note =
            fmt::format("rows {} to {} of {}", shown.begin + 1, shown.end, rows.size());
        if (shown.end < rows.size()) {
            note += fmt::format("; --first {} shows the next", shown.end + 1);
        }
        lines.emplace_back(beginningOf(note, used.columns));
    }
    return lines;
}

// If not all rows fit, one line is for the note.
WatchTable::RowRange WatchTable::visibleRows(std::size_t first, std::size_t room) const {
    if (rows.size() <= room) {
        return {0, rows.size()};
    }
    const std::size_t begin = std::min(first - 1, rows.size() - (room - 1));
    return {begin, begin + room - 1};
}

WatchTable::Widths WatchTable::widths(std::size_t columns) const {
    constexpr std::size_t kNarrowestLabel = 24;
    constexpr std::size_t kShortestCurve = 8;
    constexpr std::size_t kGapsAndMark = 11;
    Widths result;
    for (const Row& row : rows) {
        result.label = std::max(result.label, displayWidth(row.label));
        result.value = std::max(result.value, row.number.Text().size());
        result.unit = std::max(result.unit, displayWidth(row.unit));
        result.minimum = std::max(result.minimum, row.number.Minimum().size());
        result.maximum = std::max(result.maximum, row.number.Maximum().size());
    }
    const std::size_t others =
        result.value + result.unit + result.minimum + result.maximum + kGapsAndMark;
    // The names give way to a short curve.
    const std::size_t rest = columns > others ? columns - others : 0;
    const std::size_t most = rest > kShortestCurve ? rest - kShortestCurve : 0;
    result.label = std::min(result.label, std::max(most, kNarrowestLabel));
    const std::size_t used = others + result.label;
    result.history = columns > used ? std::min(columns - used, WatchedNumber::kHistory) : 0;
    result.columns = columns;
    return result;
}

std::string WatchTable::header(const Widths& used) const {
    return fmt::format("{:<{}}   {:>{}}  {:<{}}  {:>{}}  {:>{}}", "NAME", used.label, "VALUE",
                       used.value, "UNIT", used.unit, "MIN", used.minimum, "MAX", used.maximum);
}

std::string WatchTable::line(const Row& row, const Widths& used, const Terminal& terminal) const {
    const WatchedNumber& number = row.number;
    const std::string name = leftAligned(lastColumns(row.label, used.label), used.label);
    const std::string value =
        fmt::format("{} {:>{}}", number.HasChanged() ? "*" : " ", number.Text(), used.value);
    const std::string rest =
        fmt::format("  {}  {:>{}}  {:>{}}", leftAligned(row.unit, used.unit), number.Minimum(),
                    used.minimum, number.Maximum(), used.maximum);
    const std::string plain = fmt::format("{} {}{}", name, value, rest);
    if (used.history == 0) {
        return std::string(beginningOf(plain, used.columns));
    }
    return fmt::format("{} {}{}  {}", name, number.HasChanged() ? terminal.Bold(value) : value,
                       rest, sparkline(number.History(), used.history, terminal.KnowsUnicode()));
}

} // namespace orvane::tool
