#pragma once

#include "headless/xplm/Simulator.h"

namespace headless {

// What a few of the simulator's own commands do to its datarefs when no handler swallows them:
// gear, flaps, brakes, trim, throttle and pause. Commands that do not exist are left out.
void installCommandEffects(Simulator& simulator);

} // namespace headless
