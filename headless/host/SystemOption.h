#pragma once

#include <string>

#include "headless/host/SessionOptions.h"

namespace headless {

// Makes a folder laid out as the simulator's the process's working folder, and so the simulator's.
// Its plugins come before those in the options, whose files are still those that they were. The
// log is written there, unless `ownLog`. Throws PluginError when it has no plugins.
void enterSystem(const std::string& folder, SessionOptions& options, bool ownLog);

} // namespace headless
