#pragma once

#include "tools/orvane/find/NameLists.h"

namespace CLI {
class App;
} // namespace CLI

namespace orvane::tool {

// Declares --datarefs and --commands.
void declareLists(CLI::App& command, ListFiles& files);

} // namespace orvane::tool
