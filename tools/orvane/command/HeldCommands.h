#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/GlobalOptions.h"

namespace orvane::tool {

// Holds commands down until `end` or an interrupt, and releases them in any case: after a failure,
// which is thrown then, on a new connection if need be. Failure: a name that the simulator does not
// have, where nothing is begun; or they could not be released.
void holdCommands(const GlobalOptions& globals, const std::vector<std::string>& names,
                  std::chrono::steady_clock::time_point end);

// Registers commands. Failure, and a line for each: the simulator does not have them.
void registerOrRefuse(velmar::Client& client, const std::vector<std::string>& names);

} // namespace orvane::tool
