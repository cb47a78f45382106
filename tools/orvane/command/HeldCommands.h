#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/GlobalOptions.h"

namespace orvane::tool {

// Holds commands down until `end` or an interrupt, and always releases them: after a failure, which
// is then thrown, if necessary on a new connection. Failure: the simulator lacks a name, and
// nothing was begun; or they could not be released.
void holdCommands(const GlobalOptions& globals, const std::vector<std::string>& names,
                  std::chrono::steady_clock::time_point end);

// Registers commands. Failure, after a line for each missing one: the simulator lacks some.
void registerOrFail(velmar::Client& client, const std::vector<std::string>& names);

} // namespace orvane::tool
