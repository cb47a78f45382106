#pragma once

#include <string>

#include "headless/metering/Meter.h"

namespace headless {

// The statistics so far, for people: several lines, each with a newline.
std::string statsAsText(const Meter& meter);
// The same for programs: one object on one line. Figures that are not counted are null.
std::string statsAsJson(const Meter& meter);

// Describes a plugin's frame that exceeded its budget: "FILE took 812.3 us of CPU time in frame 7,
// 500 us are allowed: XPLMGetDataf 100, XPLMSetDataf 3". Empty for a frame within the budget.
std::string overBudget(const PluginFigures& frame, double budgetMicroseconds);

} // namespace headless
