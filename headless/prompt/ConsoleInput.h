#pragma once

#include <memory>

#include "headless/host/ILineSource.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// Standard input: with a prompt if a console is at a terminal, otherwise plain lines.
std::unique_ptr<ILineSource> makeConsoleInput(Simulator& simulator, bool isConsole);

} // namespace headless
