#include "tools/orvane/files/TimedRows.h"

#include <algorithm>

#include <fmt/core.h>

#include "headless/lists/ParsedNumber.h"
#include "tools/orvane/files/CsvFields.h"

namespace orvane::tool {

namespace {

constexpr double kLatestSeconds = 1e9;

} // namespace

std::optional<std::vector<std::string>> TimedRows::Fields(std::string_view line,
                                                          std::size_t columns) {
    auto fields = csvFields(line);
    if (!fields) {
        AddProblem("a quote is not closed");
    } else if (fields->size() != columns) {
        AddProblem(fmt::format("{} fields, but {} columns", fields->size(), columns));
        fields.reset();
    }
    return fields;
}

std::optional<double> TimedRows::Seconds(std::string_view field) {
    const std::optional<double> seconds = headless::parsedNumber<double>(field);
    if (!seconds || !(*seconds >= 0 && *seconds <= kLatestSeconds)) {
        AddProblem(fmt::format("\"{}\" is not a time in seconds", field));
        return std::nullopt;
    }
    if (*seconds < lastSeconds) {
        AddProblem(fmt::format("{} s comes after {} s", *seconds, lastSeconds));
        return std::nullopt;
    }
    lastSeconds = *seconds;
    return seconds;
}

void TimedRows::AddProblem(const std::string& reason) {
    problems.push_back({std::max<std::size_t>(lines.Number(), 1), 0, reason});
}

} // namespace orvane::tool
