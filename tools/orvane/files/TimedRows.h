#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/orvane/files/InputLines.h"
#include "tools/orvane/files/Problems.h"

namespace orvane::tool {

// Checks rows of CSV with a time in each. Errors are added to the problems, with the number of the
// last line read. Borrows both.
class TimedRows final {
public:
    TimedRows(const InputLines& lines, Problems& problems) : lines(lines), problems(problems) {}

    // The fields of a row. Empty if a quote is not closed or there are not as many as `columns`.
    std::optional<std::vector<std::string>> Fields(std::string_view line, std::size_t columns);
    // A time in seconds. Empty if it is not one, or is before the time of an earlier row.
    std::optional<double> Seconds(std::string_view field);
    void AddProblem(const std::string& reason);

private:
    const InputLines& lines;
    Problems& problems;
    double lastSeconds = 0;
};

} // namespace orvane::tool
