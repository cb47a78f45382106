#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "orvane/velmar/Value.h"
#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/terminal/Terminal.h"
#include "tools/orvane/terminal/WatchedNumber.h"

namespace orvane::tool {

// A table of datarefs with a row for each element of an array: value, unit, the least and the
// greatest so far, and a small curve of the latest values. A value that has changed is marked.
class WatchTable final {
public:
    // Takes in a reading: a value for each dataref.
    void See(const std::vector<DatarefArgument>& datarefs, const std::vector<velmar::Value>& values,
             WatchedNumber::TimePoint now);

    // The lines, cut to the size of the terminal. If not all rows fit, they begin at row `first`,
    // counted from 1, or are the last ones.
    std::vector<std::string> Lines(const std::string& title, const Terminal& terminal,
                                   std::size_t first = 1) const;

private:
    struct Row {
        std::string label;
        std::string unit;
        WatchedNumber number;
    };
    // A dataref's name and the index of an element.
    using Key = std::pair<std::string, std::size_t>;

    struct RowRange;
    struct Widths;
    RowRange visibleRows(std::size_t first, std::size_t room) const;
    Widths widths(std::size_t columns) const;
    std::string header(const Widths& used) const;
    std::string line(const Row& row, const Widths& used, const Terminal& terminal) const;

    std::map<Key, WatchedNumber> numbers;
    std::vector<Row> rows;
};

} // namespace orvane::tool
