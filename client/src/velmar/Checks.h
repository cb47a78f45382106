#pragma once

#include <string>
#include <string_view>

#include "orvane/velmar/Client.h"

namespace orvane::velmar {

// Each throws std::invalid_argument for anything that the server would misread, or that would end
// the simulator.
void checkName(std::string_view name);
void checkDataref(const Dataref& dataref);
// Whether the dataref can take the value.
void checkValue(const Value& value, const Dataref& dataref);
void checkAction(Action action);
// The rate is in readings per second.
void checkChanges(double rate, double deadband);

} // namespace orvane::velmar
