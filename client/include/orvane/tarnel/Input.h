#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "orvane/Export.h"

namespace orvane::tarnel {

// The number under which values are sent. If several inputs share one, each gets the value.
using ActionId = std::int32_t;

// The dataref that a condition reads.
struct ConditionDataref {
    enum class Type : std::int32_t { Int = 1, Float = 2, IntElement = 3, FloatElement = 4 };

    std::string name;
    Type type = Type::Float;
    std::int32_t element = 0; // of an array
};

struct InputRecord;

// What the server does with the values of an action: one record of the definitions.
//
// An input is made by one of the static functions and refined by the others, which can be chained:
//
//     Input::toFloat(7, "sim/cockpit2/controls/yoke_pitch_ratio").scaledByFloatRange(-1, 1)
//
// Each throws std::invalid_argument for anything that the server would silently misread: an empty
// name or one of more than 99 bytes, a negative element, scaling a target that is not a float,
// holding one that is not a command. A name that the simulator does not know goes unnoticed: a
// target gets nothing, and a dataref of a range or a condition reads as 0.
class ORVANE_API Input final {
public:
    // Targets. Values are 32-bit integers; a float target gets value / 65535 unless scaled.
    static Input toInt(ActionId action, std::string dataref);
    static Input toFloat(ActionId action, std::string dataref);
    static Input toIntElement(ActionId action, std::string dataref, std::int32_t element);
    static Input toFloatElement(ActionId action, std::string dataref, std::int32_t element);
    // The value 1 presses it, any other releases it. Runs once per 1 unless held; without a repeat
    // interval, the server runs the commands of actions 1002 to 1005 twice per 1.
    static Input toCommand(ActionId action, std::string command);

    // Scaling, for float targets: maps 0 to 65535 to the range. An int range may span at most
    // 2^31 - 1.
    Input& scaledByIntRange(std::int32_t minimum, std::int32_t maximum);
    Input& scaledByFloatRange(float minimum, float maximum);
    // The range is read from two float datarefs for each value. If both have the same value v other
    // than 0, it goes from -v to v.
    Input& scaledByDatarefs(std::string minimum, std::string maximum);
    Input& scaledByDatarefElements(std::string minimum, std::string maximum, std::int32_t element);

    // Conditions. An input has at most one: the last one given.
    Input& skippedWhenOne();
    Input& skippedWhenZero();
    Input& skippedWhilePositive(ConditionDataref dataref);
    Input& skippedWhileZero(ConditionDataref dataref);

    // The target gets this value instead of the one sent. For an element of an int array only 1 is
    // accepted, since the server always writes 1.
    Input& fixed(std::int32_t value); // int targets and commands
    Input& fixed(float value);        // float targets

    // Commands: begins at the first 1 and ends at the first other value. The server does not end a
    // held command when its client goes; the client does, see Options::releaseHeld. If it can, it
    // sends the value 0, which all inputs of the action get.
    Input& held();
    // Commands that are not held: further 1s are ignored for this long, at least 1 ms.
    Input& repeatedEvery(std::chrono::milliseconds interval);

    ActionId action() const;
    // The name of the dataref or command, and the element of an array.
    const std::string& target() const;
    std::int32_t element() const;

private:
    friend const InputRecord& inputRecordOf(const Input& input);

    explicit Input(InputRecord record);
    template <typename Change>
    Input& refine(Change change);

    // Never changed, so that copies can share it; each refinement makes a new one.
    std::shared_ptr<const InputRecord> record;
};

} // namespace orvane::tarnel
