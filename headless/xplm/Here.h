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

// False, and the refusal of the function that was entered recorded, for a null where the SDK needs
// something.
template <class Pointer>
bool isGiven(Pointer argument, const char* name) {
    if (argument == nullptr) {
        Simulator::Current().Recorder().Refuse(Refusal::NullHandle, name);
    }
    return argument != nullptr;
}

} // namespace headless
