#pragma once

#include <string>
#include <string_view>

#include "orvane/velmar/Client.h"

namespace orvane::velmar {

// Each throws std::invalid_argument for what the server would read as something else, or would end
// the simulator for.
void checkName(std::string_view name);
void checkDataref(const Dataref& dataref);
// Whether a write of the value is one of this dataref.
void checkValue(const Value& value, const Dataref& dataref);
void checkAction(Action action);
// The rate is in readings per second.
void checkChanges(double rate, double deadband);

} // namespace orvane::velmar
