#pragma once

#include "headless/xplm/Simulator.h"

namespace headless {

// The current simulator. Every C function of the SDK starts with this call. The name is that of the
// calling function, for reports.
inline Simulator& here(const char* function = __builtin_FUNCTION()) {
    Simulator& simulator = Simulator::Current();
    simulator.Enter(function);
    return simulator;
}

// False if the pointer is null where the SDK needs one. Records the refusal for the function that
// was entered.
template <class Pointer>
bool isGiven(Pointer argument, const char* name) {
    if (argument == nullptr) {
        Simulator::Current().Recorder().Refuse(Refusal::NullHandle, name);
    }
    return argument != nullptr;
}

} // namespace headless
