#pragma once

#include "headless/world/DatarefNumber.h"
#include "headless/xplm/Simulator.h"

#include <string>

namespace headless {

// What a few of the simulator's own commands do to its datarefs when no handler swallows them:
// gear, flaps, brakes, trim, throttle and pause. Commands that do not exist are left out.
class CommandEffects final {
public:
    static void Install(Simulator& simulator);

private:
    // When the command begins: the value becomes 1 - value, or `target`.
    static void toggle(Simulator& simulator, const std::string& command, const char* dataref);
    static void assign(Simulator& simulator, const std::string& command, const char* dataref,
                       double target);
    // When the command begins: `step` more, within the limits. `repeats`: also on every frame that
    // the command is held.
    static void move(Simulator& simulator, const std::string& command, const char* dataref,
                     double step, double lowest, double highest, bool repeats);
};

} // namespace headless
