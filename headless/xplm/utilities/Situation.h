#pragma once

#include <string>

#include "headless/xplm/data/DatarefTable.h"

namespace headless {

// A saved situation: the numbers among the simulator's own datarefs as text, one name and number
// per line. Files of another simulator are not read.

// False if the file cannot be written.
bool saveSituation(const DatarefTable& datarefs, const std::string& path);
// False if the file cannot be read or is not one of ours; then nothing changes.
bool loadSituation(const DatarefTable& datarefs, const std::string& path);

} // namespace headless
