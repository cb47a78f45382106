#pragma once

#include "tools/orvane/cli/ExitCode.h"
#include "tools/orvane/plugin/ChosenSimulators.h"

namespace orvane::tool {
struct GlobalOptions;
}

namespace orvane::tool::plugin {

// Prints the status of simulators, server, port and firewall.
ExitCode showStatus(const GlobalOptions& globals, const ChosenSimulators& chosen);

} // namespace orvane::tool::plugin
