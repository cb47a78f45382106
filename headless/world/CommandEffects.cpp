#include "headless/world/CommandEffects.h"

#include <algorithm>
#include <functional>
#include <string>

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

// When the command begins, the dataref becomes what `next` makes of its value; with `repeats`, also
// in every frame while the command is held.
void change(Simulator& simulator, const std::string& name, const char* dataref,
            const std::function<double(double)>& next, bool repeats = false) {
    Command* const command = simulator.Commands().Lookup(name);
    if (command == nullptr) {
        return;
    }
    const DatarefNumber number(simulator.Datarefs().Lookup(dataref));
    command->action = [number, next, repeats](XPLMCommandPhase phase) {
        if (phase == xplm_CommandBegin || (repeats && phase == xplm_CommandContinue)) {
            number.Set(next(number.Get()));
        }
    };
}

void toggle(Simulator& simulator, const std::string& command, const char* dataref) {
    change(simulator, command, dataref, [](double value) { return 1.0 - value; });
}

void assign(Simulator& simulator, const std::string& command, const char* dataref, double target) {
    change(simulator, command, dataref, [target](double) { return target; });
}

// Adds `step`, within the limits.
void move(Simulator& simulator, const std::string& command, const char* dataref, double step,
          double lowest, double highest, bool repeats) {
    change(
        simulator, command, dataref,
        [=](double value) { return std::clamp(value + step, lowest, highest); }, repeats);
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
