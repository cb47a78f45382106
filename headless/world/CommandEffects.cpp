#include "headless/world/CommandEffects.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "headless/world/DatarefNumber.h"

namespace headless {

namespace {

constexpr const char* kGear = "sim/cockpit2/controls/gear_handle_down";
constexpr const char* kFlaps = "sim/cockpit2/controls/flap_ratio";
constexpr const char* kSpeedBrakes = "sim/cockpit2/controls/speedbrake_ratio";
constexpr const char* kParkingBrake = "sim/cockpit2/controls/parking_brake_ratio";
constexpr const char* kPitchTrim = "sim/cockpit2/controls/elevator_trim";
constexpr const char* kThrottle = "sim/cockpit2/engine/actuators/throttle_ratio";

constexpr double kNotch = 0.25;
constexpr double kTrimStep = 0.01;
constexpr double kThrottleStep = 0.05;

void setAction(Simulator& simulator, const std::string& name,
               std::function<void(XPLMCommandPhase)> action) {
    if (Command* command = simulator.Commands().Lookup(name)) {
        command->action = std::move(action);
    }
}

// When the command begins, the value becomes 1 - value, or `target`.
void toggle(Simulator& simulator, const std::string& command, const char* dataref) {
    const DatarefNumber number(simulator.Datarefs().Lookup(dataref));
    setAction(simulator, command, [number](XPLMCommandPhase phase) {
        if (phase == xplm_CommandBegin) {
            number.Set(1.0 - number.Get());
        }
    });
}

void assign(Simulator& simulator, const std::string& command, const char* dataref, double target) {
    const DatarefNumber number(simulator.Datarefs().Lookup(dataref));
    setAction(simulator, command, [number, target](XPLMCommandPhase phase) {
        if (phase == xplm_CommandBegin) {
            number.Set(target);
        }
    });
}

// When the command begins, adds `step`, within the limits. With `repeats`, also on every frame
// while the command is held.
void move(Simulator& simulator, const std::string& command, const char* dataref, double step,
          double lowest, double highest, bool repeats) {
    const DatarefNumber number(simulator.Datarefs().Lookup(dataref));
    setAction(simulator, command, [=](XPLMCommandPhase phase) {
        if (phase == xplm_CommandBegin || (repeats && phase == xplm_CommandContinue)) {
            number.Set(std::clamp(number.Get() + step, lowest, highest));
        }
    });
}

} // namespace

void installCommandEffects(Simulator& simulator) {
    const std::string controls = "sim/flight_controls/";
    toggle(simulator, controls + "landing_gear_toggle", kGear);
    assign(simulator, controls + "landing_gear_up", kGear, 0.0);
    assign(simulator, controls + "landing_gear_down", kGear, 1.0);
    toggle(simulator, controls + "brakes_toggle_max", kParkingBrake);
    move(simulator, controls + "flaps_up", kFlaps, -kNotch, 0.0, 1.0, false);
    move(simulator, controls + "flaps_down", kFlaps, kNotch, 0.0, 1.0, false);
    move(simulator, controls + "speed_brakes_up_one", kSpeedBrakes, -kNotch, 0.0, 1.0, false);
    move(simulator, controls + "speed_brakes_down_one", kSpeedBrakes, kNotch, 0.0, 1.0, false);
    move(simulator, controls + "pitch_trim_up", kPitchTrim, kTrimStep, -1.0, 1.0, true);
    move(simulator, controls + "pitch_trim_down", kPitchTrim, -kTrimStep, -1.0, 1.0, true);
    assign(simulator, controls + "pitch_trim_takeoff", kPitchTrim, 0.0);
    move(simulator, "sim/engines/throttle_up", kThrottle, kThrottleStep, 0.0, 1.0, true);
    move(simulator, "sim/engines/throttle_down", kThrottle, -kThrottleStep, 0.0, 1.0, true);
    toggle(simulator, "sim/operation/pause_toggle", "sim/time/paused");
}

} // namespace headless
