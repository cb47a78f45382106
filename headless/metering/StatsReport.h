#pragma once

#include <string>

#include "headless/metering/Meter.h"

namespace headless {

// What was measured so far, for people: several lines, the last one with its newline.
std::string statsAsText(const Meter& meter);
// The same for programs: one object on one line. What is not counted is null.
std::string statsAsJson(const Meter& meter);

// A plugin's frame that took more than it may: "FILE took 812.3 us of CPU time in frame 7, 500 us
// are allowed: XPLMGetDataf 100, XPLMSetDataf 3". Empty for a frame within the budget.
std::string overBudget(const PluginFigures& frame, double budgetMicroseconds);

} // namespace headless
