#pragma once

#include <string>

#include "headless/xplm/data/DatarefTable.h"

namespace headless {

// A saved situation: the numbers among the simulator's own datarefs as text, one name and number
// per line. Files of another simulator are not read.
class Situation final {
public:
    explicit Situation(DatarefTable& datarefTable) : datarefs(datarefTable) {}

    // False if the file cannot be written.
    bool Save(const std::string& path) const;
    // False if the file cannot be read or is not one of ours; then nothing changes.
    bool Load(const std::string& path) const;

private:
    DatarefTable& datarefs;
};

} // namespace headless
