#pragma once

#include <string_view>

#include "tools/orvane/config/ConfigReport.h"

namespace orvane::tool::config {

// Reads the content of a dataref configuration file as the plugin does when it starts, and says
// what becomes of every line.
//
// Written on its own and without the plugin's code. What only the simulator knows is not judged
// here: a name that the simulator or another plugin publishes already is refused by the simulator.
ConfigReport readConfig(std::string_view content);

} // namespace orvane::tool::config
