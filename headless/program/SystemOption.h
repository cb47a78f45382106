#pragma once

#include <string>

#include "headless/host/SessionOptions.h"

namespace headless {

// Makes a folder laid out like the simulator's the working folder of the process, and so the
// simulator's. Its plugins come before those in the options; relative paths in the options keep
// their meaning. The log is written there, unless `ownLog`. Throws PluginError if the folder has no
// plugins.
void enterSystem(const std::string& folder, SessionOptions& options, bool ownLog);

} // namespace headless
