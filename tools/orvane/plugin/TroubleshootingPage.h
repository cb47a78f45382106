#pragma once

#include <string_view>

namespace orvane::tool::plugin {

// docs/troubleshooting.md as it was when the tool was built: the one source of what the tool says
// about the plugin's log lines.
std::string_view troubleshootingPage();

} // namespace orvane::tool::plugin
