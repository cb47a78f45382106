#include "tools/demo/Panel.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace demo {

namespace {

constexpr std::int32_t kFirstOutputId = 101;
constexpr double kAxisMaximum = 65535.0;
constexpr std::int32_t kAxisCentre = 32768;
constexpr std::int32_t kCruiseThrottle = 32768;
constexpr std::int32_t kFullForce = 100;

constexpr const char* kYokeRoll = "sim/cockpit2/controls/yoke_roll_ratio";
constexpr const char* kYokePitch = "sim/cockpit2/controls/yoke_pitch_ratio";
constexpr const char* kThrottle = "sim/cockpit2/engine/actuators/throttle_ratio";
constexpr const char* kHeading = "sim/cockpit/autopilot/heading_mag";
constexpr const char* kGear = "sim/cockpit2/controls/gear_handle_down";
constexpr const char* kFlaps = "sim/cockpit2/controls/flap_ratio";
constexpr const char* kForceFactors = "kyr/external_forcescalefactor_value";
// Made by the server because the demo declares outputs of these names.
constexpr const char* kPitchLimit = "kyr/demo/pitch_limit";
constexpr const char* kButton = "kyr/demo/button";

// From -1 to 1.
double wave(double seconds, double period) {
    return std::sin(2.0 * std::numbers::pi * seconds / period);
}

// `ratio` from 0 to 1.
std::int32_t axis(double ratio) {
    return static_cast<std::int32_t>(std::lround(ratio * kAxisMaximum));
}

// Whether `seconds` lies in the part from `from` to `to` of a period.
bool within(double seconds, double period, double from, double to) {
    const double place = std::fmod(seconds, period);
    return place >= from && place < to;
}

// A quarter of a period ahead of the pitch, so that the aircraft banks evenly to both sides.
std::int32_t rollAt(double seconds) {
    return axis(0.5 + 0.3 * wave(seconds + 1.25, 5.0));
}

std::int32_t pitchAt(double seconds) {
    return axis(0.5 + 0.5 * wave(seconds, 4.0));
}

std::int32_t pitchLimitAt(double seconds) {
    return axis(0.4 + 0.2 * wave(seconds, 10.0));
}

std::int32_t headingAt(double seconds) {
    return axis(std::fmod(seconds / 10.0, 1.0));
}

std::int32_t throttleAt(double seconds) {
    return axis(0.6 + 0.3 * wave(seconds, 8.0));
}

std::int32_t gearAt(double seconds) {
    return within(seconds, 6.0, 0.0, 3.0) ? 1 : 0;
}

std::int32_t forceAt(double seconds) {
    return kFullForce + 10 * static_cast<std::int32_t>(std::fmod(seconds, 5.0));
}

std::int32_t flapsDownAt(double seconds) {
    return within(seconds, 4.0, 1.0, 1.5) ? 1 : 0;
}

std::int32_t flapsUpAt(double seconds) {
    return within(seconds, 4.0, 3.0, 3.5) ? 1 : 0;
}

std::int32_t buttonAt(double seconds) {
    return within(seconds, 2.0, 1.0, 2.0) ? 1 : 0;
}

OutputRecord output(const char* name, ValueType type, std::int32_t count = 0) {
    return {.name = name, .type = type, .elementCount = count};
}

// Runs once per press: further values of 1 within the interval are left out by the server.
InputRecord onceCommand(const char* name) {
    return {.repeatIntervalMs = 1000, .targetType = ValueType::Command, .targetName = name};
}

} // namespace

Panel::Panel() {
    addAxes();
    addSwitches();
    addCommands();
    addGauges();
}

std::vector<InputRecord> Panel::Inputs() const {
    std::vector<InputRecord> inputs;
    for (const PanelRow& row : rows) {
        if (row.control) {
            inputs.push_back(row.control->record);
        }
    }
    return inputs;
}

std::vector<OutputRecord> Panel::Outputs() const {
    std::vector<OutputRecord> outputs;
    for (const PanelRow& row : rows) {
        if (row.output) {
            outputs.push_back(*row.output);
        }
    }
    return outputs;
}

std::vector<DataItem> Panel::PositionsAt(double seconds) const {
    std::vector<DataItem> items;
    for (const PanelRow& row : rows) {
        if (row.control) {
            items.push_back({static_cast<std::uint32_t>(row.control->record.actionId),
                             row.control->positionAt(seconds)});
        }
    }
    return items;
}

std::vector<DataItem> Panel::RestPositions() const {
    std::vector<DataItem> items;
    for (const PanelRow& row : rows) {
        if (row.control) {
            items.push_back(
                {static_cast<std::uint32_t>(row.control->record.actionId), row.control->rest});
        }
    }
    return items;
}

void Panel::addAxes() {
    add({"roll", "-1..1, float range",
         Control{{.targetType = ValueType::Float,
                  .scaling = Scaling::FloatRange,
                  .floatRangeMinimum = -1.0F,
                  .floatRangeMaximum = 1.0F,
                  .targetName = kYokeRoll},
                 &rollAt,
                 kAxisCentre},
         output(kYokeRoll, ValueType::Float)});
    // Before the pitch, whose range it is: values are applied in the order in which they are sent.
    add({"limit", "0..1, own dataref",
         Control{{.targetType = ValueType::Float, .targetName = kPitchLimit}, &pitchLimitAt, 0},
         output(kPitchLimit, ValueType::Float)});
    add({"pitch", "-limit..limit, dataref range",
         Control{{.targetType = ValueType::Float,
                  .scaling = Scaling::DatarefRange,
                  .rangeType = ValueType::Float,
                  .rangeMinimumName = kPitchLimit,
                  .rangeMaximumName = kPitchLimit,
                  .targetName = kYokePitch},
                 &pitchAt,
                 kAxisCentre},
         output(kYokePitch, ValueType::Float)});
    add({"heading", "0..359, int range",
         Control{{.intRangeMinimum = 0,
                  .intRangeMaximum = 359,
                  .targetType = ValueType::Float,
                  .scaling = Scaling::IntRange,
                  .targetName = kHeading},
                 &headingAt,
                 0},
         output(kHeading, ValueType::Float)});
    add({"throttle", "0..1, element 0 of floats",
         Control{{.targetType = ValueType::FloatArray, .targetName = kThrottle},
                 &throttleAt,
                 kCruiseThrottle},
         output(kThrottle, ValueType::FloatArray, 2)});
}

void Panel::addSwitches() {
    add({"gear", "as it is, int",
         Control{{.targetType = ValueType::Int, .targetName = kGear}, &gearAt, 1},
         output(kGear, ValueType::Int)});
    add({"force", "as it is, element 1 of ints",
         Control{{.targetIndex = 1, .targetType = ValueType::IntArray, .targetName = kForceFactors},
                 &forceAt,
                 kFullForce},
         output(kForceFactors, ValueType::IntArray, 4)});
}

void Panel::addCommands() {
    add({"flaps dn", "command, once per press",
         Control{onceCommand("sim/flight_controls/flaps_down"), &flapsDownAt, 0},
         output(kFlaps, ValueType::Float)});
    add({"flaps up", "command, once per press",
         Control{onceCommand("sim/flight_controls/flaps_up"), &flapsUpAt, 0}, std::nullopt});
    add({"button", "own command, held",
         Control{{.targetType = ValueType::Command, .holdCommand = 1, .targetName = kButton},
                 &buttonAt,
                 0},
         output(kButton, ValueType::Command)});
}

void Panel::addGauges() {
    const std::string position = "sim/flightmodel/position/";
    const std::string indicators = "sim/cockpit2/gauges/indicators/";
    add({"bank", "degrees", std::nullopt, output((position + "phi").c_str(), ValueType::Float)});
    add({"nose", "degrees", std::nullopt, output((position + "theta").c_str(), ValueType::Float)});
    add({"airspeed", "knots", std::nullopt,
         output((indicators + "airspeed_kts_pilot").c_str(), ValueType::Float)});
    add({"altitude", "feet", std::nullopt,
         output((indicators + "altitude_ft_pilot").c_str(), ValueType::Float)});
}

void Panel::add(PanelRow row) {
    const auto place = static_cast<std::int32_t>(rows.size());
    if (row.control) {
        row.control->record.actionId = 1 + place;
    }
    if (row.output) {
        row.output->outputId = kFirstOutputId + place;
    }
    rows.push_back(std::move(row));
}

} // namespace demo
