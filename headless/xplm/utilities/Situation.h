#pragma once

#include <string>

#include "headless/xplm/data/DatarefTable.h"

namespace headless {

// A saved situation: the numbers among the simulator's own datarefs as text, a name and a number a
// line. Another simulator's files are not read.
class Situation final {
public:
    explicit Situation(DatarefTable& datarefTable) : datarefs(datarefTable) {}

    // False when the file cannot be written.
    bool Save(const std::string& path) const;
    // False when the file cannot be read or is not one of ours; nothing is changed then.
    bool Load(const std::string& path) const;

private:
    DatarefTable& datarefs;
};

} // namespace headless
