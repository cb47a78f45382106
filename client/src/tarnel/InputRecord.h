#pragma once

#include <cstdint>
#include <string>

#include "orvane/tarnel/Input.h"

namespace orvane::tarnel {

// The fields of an input on the wire, without those that no input sets. docs/tarnel.md explains
// them.
struct InputRecord {
    enum Target : std::int32_t {
        TargetInt = 1,
        TargetFloat = 2,
        TargetIntElement = 3,
        TargetFloatElement = 4,
        TargetCommand = 6
    };
    enum Scaling : std::int32_t { ScalingIntRange = 1, ScalingFloatRange = 2, ScalingDatarefs = 3 };
    enum Range : std::int32_t { RangeFloat = 2, RangeFloatElement = 4 };
    enum Condition : std::int32_t {
        NotWhenOne = 1,
        NotWhenZero = 2,
        NotWhilePositive = 3,
        NotWhileZero = 4
    };

    ActionId action = 0;
    std::int32_t targetElement = 0;
    std::int32_t fixedInt = 0;
    std::int32_t repeatMs = 0;
    std::int32_t intMinimum = 0;
    std::int32_t intMaximum = 0;
    std::int32_t targetType = 0;
    std::int32_t scaling = 0;
    std::int32_t rangeType = 0;
    std::int32_t rangeElement = 0;
    std::int32_t condition = 0;
    float fixedFloat = 0;
    float floatMinimum = 0;
    float floatMaximum = 0;
    bool usesFixed = false;
    bool isHeld = false;
    std::string rangeMinimum{};
    std::string rangeMaximum{};
    std::string target{};
    std::string conditionDataref{};
    std::int32_t conditionType = 0;
    std::int32_t conditionElement = 0;
};

const InputRecord& inputRecordOf(const Input& input);

} // namespace orvane::tarnel
