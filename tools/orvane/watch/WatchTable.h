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

// Datarefs under each other, an array with a row for each element: value, unit, the least and the
// greatest seen, and the latest values as a small curve. A value that has changed is marked.
class WatchTable final {
public:
    // Takes in a reading: a value for each dataref.
    void See(const std::vector<DatarefArgument>& datarefs, const std::vector<velmar::Value>& values,
             WatchedNumber::TimePoint now);

    // The lines, none wider or more than the terminal permits. Where not all rows fit, those from
    // `first` on are shown, from 1 on, or the last ones.
    std::vector<std::string> Lines(const std::string& title, const Terminal& terminal,
                                   std::size_t first = 1) const;

private:
    struct Row {
        std::string label;
        std::string unit;
        WatchedNumber number;
    };
    // By a dataref's name and the place of an element in it.
    using Key = std::pair<std::string, std::size_t>;

    struct Extract;
    struct Widths;
    Extract extract(std::size_t first, std::size_t room) const;
    Widths widths(std::size_t columns) const;
    std::string header(const Widths& used) const;
    std::string line(const Row& row, const Widths& used, const Terminal& terminal) const;

    std::map<Key, WatchedNumber> numbers;
    std::vector<Row> rows;
};

} // namespace orvane::tool
