#pragma once

#include "headless/xplm/Simulator.h"

namespace headless {

// The current simulator, for the SDK's C functions: every one of them enters by it. The name is
// that of the function that calls, for reports.
inline Simulator& here(const char* function = __builtin_FUNCTION()) {
    Simulator& simulator = Simulator::Current();
    simulator.Enter(function);
    return simulator;
}

} // namespace headless
