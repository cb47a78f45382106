#pragma once

#include <map>
#include <string>
#include <vector>

#include "orvane/velmar/Value.h"
#include "tools/orvane/cli/GlobalOptions.h"
#include "tools/orvane/find/NameLists.h"

namespace orvane::tool {

// The values of datarefs by name, of those that the protocol can transfer: numbers, and arrays of
// at most 64 of them. Only the first 100 are asked for. Waits for a second at most; without a
// server there are none.
std::map<std::string, velmar::Value> presentValues(const GlobalOptions& globals,
                                                   const std::vector<ListedDataref>& datarefs);

} // namespace orvane::tool
