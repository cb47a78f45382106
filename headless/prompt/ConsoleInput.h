#pragma once

#include <memory>

#include "headless/host/ILineSource.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// Standard input: with a prompt for a console at a terminal, else as it comes.
std::unique_ptr<ILineSource> makeConsoleInput(Simulator& simulator, bool isConsole);

} // namespace headless
