#include "tools/orvane/drive/DriveTable.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <type_traits>
#include <utility>
#include <variant>

#include <fmt/format.h>

#include "tools/orvane/terminal/Bar.h"
#include "tools/orvane/terminal/DisplayWidth.h"
#include "tools/orvane/terminal/PrintableText.h"
#include "tools/orvane/terminal/Sparkline.h"

namespace orvane::tool {

namespace {

constexpr std::size_t kMaxRows = 500;
constexpr std::size_t kBarColumns = 10;
constexpr std::size_t kShortestCurve = 4;
constexpr std::size_t kLongestMapping = 32; // before the curve goes first
constexpr std::size_t kNarrowestLabel = 8;
constexpr std::size_t kGap = 2;

struct Number {
    double number = 0;
    std::string text;
};

// A fixed number of decimals, since the numbers keep moving.
Number numberOf(float number) {
    const double size = std::abs(number);
    if (size >= 1e6 || (size < 1e-3 && size > 0)) {
        return {number, fmt::format("{:.3e}", number)};
    }
    return {number, fmt::format("{:.{}f}", number, size >= 100 ? 1 : 3)};
}

Number numberOf(std::int32_t number) {
    return {static_cast<double>(number), fmt::format("{}", number)};
}

Number numberOf(bool isDown) {
    return {isDown ? 1.0 : 0.0, isDown ? "down" : "-"};
}

template <typename Value>
Number numberAt(const Value& value, std::size_t place) {
    if constexpr (std::is_arithmetic_v<Value>) {
        return numberOf(value);
    } else {
        return place < value.size() ? numberOf(value[place]) : Number();
    }
}

bool isArray(const tarnel::Output& output) {
    using tarnel::OutputType;
    return output.type() == OutputType::IntArray || output.type() == OutputType::FloatArray;
}

// The mark that shows the state of an input.
std::string markOf(const ProfileInput& input, std::int32_t sent, bool unicode) {
    if (input.isCommand) {
        const char* const isDown = input.isHeld ? "held" : "pressed";
        return sent == 1 ? isDown : "";
    }
    if (!input.isAxis) {
        return "";
    }
    const double part = std::clamp(sent / kHighestAxisValue, 0.0, 1.0);
    std::string text = bar(part * kBarColumns, unicode);
    for (std::size_t i = displayWidth(text); i < kBarColumns; ++i) {
        text += unicode ? "·" : ".";
    }
    return text;
}

} // namespace

struct DriveTable::Widths {
    std::size_t label = 4;
    std::size_t sent = 5;
    std::size_t back = 9;
    std::size_t mapping = 3;
    // The rest is for the curve.
    std::size_t curve = 0;
    std::size_t columns = 0;
};

DriveTable::DriveTable(const Profile& profile) : profile(profile) {
    std::set<std::size_t> shared;
    for (const ProfileInput& input : profile.inputs) {
        const std::size_t firstRow = rows.size();
        for (std::size_t i = 0; i < profile.outputs.size(); ++i) {
            if (profile.outputs[i].name == input.name) {
                addRowsOf(i);
                shared.insert(i);
            }
        }
        addInput(input, firstRow);
    }
    for (std::size_t i = 0; i < profile.outputs.size(); ++i) {
        if (!shared.contains(i)) {
            addRowsOf(i);
        }
    }
}

void DriveTable::add(Row row) {
    if (rows.size() < kMaxRows) {
        rows.push_back(std::move(row));
    } else {
        ++furtherRows;
    }
}

void DriveTable::addRowsOf(std::size_t output) {
    const ProfileOutput& entry = profile.outputs[output];
    const tarnel::Output& record = profile.definitions.outputs()[output];
    const std::string label = printable(entry.name);
    const std::string unit = printable(entry.unit);
    if (!isArray(record)) {
        add({label, nullptr, &entry, 0, 0, unit});
        return;
    }
    const auto count = static_cast<std::size_t>(record.count());
    const std::size_t kept = std::min(count, kMaxRows - rows.size());
    for (std::size_t i = 0; i < kept; ++i) {
        const std::int32_t element = record.firstElement() + static_cast<std::int32_t>(i);
        add({fmt::format("{}[{}]", label, element), nullptr, &entry, i, element, unit});
    }
    furtherRows += count - kept;
}

// In the row of the element that it writes to, if there is one.
void DriveTable::addInput(const ProfileInput& input, std::size_t firstRow) {
    if (firstRow == rows.size()) {
        add({printable(input.name)});
    }
    const auto first = rows.begin() + static_cast<std::ptrdiff_t>(firstRow);
    auto row = std::find_if(first, rows.end(), [&](const Row& each) {
        return each.element == input.element.value_or(0);
    });
    row = row == rows.end() ? first : row;
    if (row != rows.end()) {
        row->input = &input;
        row->mapping = printable(input.mapping) + (row->mapping.empty() ? "" : ", ") + row->mapping;
    }
}

void DriveTable::See(std::span<const tarnel::Item> items, const tarnel::Answer& answer,
                     WatchedNumber::TimePoint now) {
    for (Row& row : rows) {
        for (const tarnel::Item& item : items) {
            if (row.input != nullptr && row.input->action == item.action) {
                row.sent = item.value;
            }
        }
        if (row.output != nullptr) {
            const Number number =
                std::visit([&](const auto& value) { return numberAt(value, row.place); },
                           answer.at(row.output->id));
            row.back.See(number.number, number.text, now);
        }
    }
}

std::vector<std::string> DriveTable::Lines(const std::string& title,
                                           const Terminal& terminal) const {
    // One column stays free, since some terminals wrap after a full line; so does one row.
    const Widths used = widths(terminal.Columns() - 1);
    const std::size_t room = std::max<std::size_t>(terminal.Rows(), 5) - 3;
    const std::size_t all = rows.size() + furtherRows;
    const std::size_t shown = std::min(rows.size(), all <= room ? room : room - 1);
    std::vector<std::string> lines{std::string(beginningOf(title, used.columns)),
                                   terminal.Bold(beginningOf(header(used), used.columns))};
    for (std::size_t i = 0; i < shown; ++i) {
        lines.push_back(line(rows[i], used, terminal));
    }
    if (shown < all) {
        const std::string note = fmt::format("{} more rows do not fit", all - shown);
        lines.emplace_back(beginningOf(note, used.columns));
    }
    return lines;
}

// The curve gives way to the other columns, and those to the names.
DriveTable::Widths DriveTable::widths(std::size_t columns) const {
    Widths result;
    result.columns = columns;
    for (const Row& row : rows) {
        result.label = std::max(result.label, displayWidth(row.label));
        const std::size_t digits = row.sent ? fmt::format_int(*row.sent).size() : 0;
        result.sent = std::max(result.sent, digits);
        result.back = std::max(result.back, row.back.Text().size());
        result.mapping = std::max(result.mapping, displayWidth(row.mapping));
    }
    const std::size_t others = result.sent + 1 + kBarColumns + result.back + 2 * kGap;
    const std::size_t forLabel = columns > others ? columns - others : 0;
    result.label = std::min(result.label, std::max(forLabel, kNarrowestLabel));
    const std::size_t used = others + result.label;
    const std::size_t rest = columns > used ? columns - used : 0;
    const std::size_t wanted = kGap + std::min(result.mapping, kLongestMapping) + kGap;
    if (rest >= wanted + kShortestCurve) {
        result.curve = std::min(rest - wanted, WatchedNumber::kHistory);
    }
    return result;
}

std::string DriveTable::header(const Widths& used) {
    const std::string curve = used.curve == 0 ? "" : std::string(used.curve + kGap, ' ');
    return fmt::format("{:<{}}  {:>{}} {:<{}}  {:>{}}{}  HOW", "NAME", used.label, "IN", used.sent,
                       "", kBarColumns, "BACK", used.back, curve);
}

std::string DriveTable::line(const Row& row, const Widths& used, const Terminal& terminal) {
    const bool unicode = terminal.KnowsUnicode();
    const std::string sent = row.sent ? fmt::format("{}", *row.sent) : "";
    const std::string mark = row.sent
                                 ? leftAligned(markOf(*row.input, *row.sent, unicode), kBarColumns)
                                 : std::string(kBarColumns, ' ');
    const bool isDown = row.sent == 1 && row.input->isCommand;
    std::string plain = leftAligned(lastColumns(row.label, used.label), used.label) + "  ";
    const std::size_t markBegin = plain.size() + used.sent + 1;
    plain += fmt::format("{:>{}} {}  {:>{}}", sent, used.sent, mark, row.back.Text(), used.back);
    if (used.curve > 0) {
        plain += "  " + leftAligned(sparkline(row.back.History(), used.curve, unicode), used.curve);
    }
    plain += (row.mapping.empty() ? "" : "  ") + row.mapping;
    std::string cut(beginningOf(plain, used.columns));
    cut.erase(cut.find_last_not_of(' ') + 1);
    if (isDown && cut.size() >= markBegin + mark.size()) {
        cut.replace(markBegin, mark.size(), terminal.Bold(mark));
    }
    return cut;
}

} // namespace orvane::tool
