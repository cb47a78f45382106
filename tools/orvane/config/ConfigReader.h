#pragma once

#include <string_view>

#include "tools/orvane/config/ConfigReport.h"

namespace orvane::tool::config {

// Reads the content of a dataref configuration file as the plugin does at startup, and says what
// every line does.
//
// Shares no code with the plugin. It cannot know what only the simulator knows: the simulator
// refuses a name that it or another plugin already publishes.
ConfigReport readConfig(std::string_view content);

} // namespace orvane::tool::config
