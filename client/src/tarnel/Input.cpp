#include "orvane/tarnel/Input.h"

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <utility>

#include "tarnel/Names.h"

namespace orvane::tarnel {

namespace {

enum class Target : std::int32_t {
    Int = 1,
    Float = 2,
    IntElement = 3,
    FloatElement = 4,
    Command = 6
};
enum class Scaling : std::int32_t { IntRange = 1, FloatRange = 2, Datarefs = 3 };
enum class RangeType : std::int32_t { Float = 2, FloatElement = 4 };
enum class Condition : std::int32_t { One = 1, Zero = 2, DatarefPositive = 3, DatarefZero = 4 };

bool isOf(const Input::Record& record, Target target) {
    return record.targetType == static_cast<std::int32_t>(target);
}

void refuseUnless(bool allowed, const Input::Record& record, const std::string& what) {
    if (!allowed) {
        throw std::invalid_argument("the input of " + record.target + " " + what);
    }
}

bool isFloat(const Input::Record& record) {
    return isOf(record, Target::Float) || isOf(record, Target::FloatElement);
}

void refuseScalingUnlessFloat(const Input::Record& record) {
    refuseUnless(isFloat(record), record, "is no float and cannot be scaled");
}

void setScaling(Input::Record& record, Scaling scaling) {
    record.scaling = static_cast<std::int32_t>(scaling);
}

void setRange(Input::Record& record, RangeType type, std::string minimum, std::string maximum,
              std::int32_t element) {
    refuseScalingUnlessFloat(record);
    minimum = checkedName(std::move(minimum));
    maximum = checkedName(std::move(maximum));
    record.rangeElement = checkedElement(element, minimum);
    record.rangeMinimum = std::move(minimum);
    record.rangeMaximum = std::move(maximum);
    record.rangeType = static_cast<std::int32_t>(type);
    setScaling(record, Scaling::Datarefs);
}

void setCondition(Input::Record& record, Condition condition, ConditionDataref dataref) {
    using Type = ConditionDataref::Type;
    refuseUnless(dataref.type >= Type::Int && dataref.type <= Type::FloatElement, record,
                 "has a condition of a type that there is not");
    dataref.name = checkedName(std::move(dataref.name));
    record.conditionElement = checkedElement(dataref.element, dataref.name);
    record.conditionDataref = std::move(dataref.name);
    record.conditionType = static_cast<std::int32_t>(dataref.type);
    record.condition = static_cast<std::int32_t>(condition);
}

void setCondition(Input::Record& record, Condition condition) {
    record.condition = static_cast<std::int32_t>(condition);
    record.conditionDataref.clear();
    record.conditionType = 0;
    record.conditionElement = 0;
}

} // namespace

Input::Input(ActionId action, std::int32_t targetType, std::string target, std::int32_t element) {
    record.action = action;
    record.targetType = targetType;
    record.target = checkedName(std::move(target));
    record.targetElement = checkedElement(element, record.target);
}

Input Input::toInt(ActionId action, std::string dataref) {
    return {action, static_cast<std::int32_t>(Target::Int), std::move(dataref), 0};
}

Input Input::toFloat(ActionId action, std::string dataref) {
    return {action, static_cast<std::int32_t>(Target::Float), std::move(dataref), 0};
}

Input Input::toIntElement(ActionId action, std::string dataref, std::int32_t element) {
    return {action, static_cast<std::int32_t>(Target::IntElement), std::move(dataref), element};
}

Input Input::toFloatElement(ActionId action, std::string dataref, std::int32_t element) {
    return {action, static_cast<std::int32_t>(Target::FloatElement), std::move(dataref), element};
}

Input Input::toCommand(ActionId action, std::string command) {
    return {action, static_cast<std::int32_t>(Target::Command), std::move(command), 0};
}

Input& Input::scaledByIntRange(std::int32_t minimum, std::int32_t maximum) {
    refuseScalingUnlessFloat(record);
    // The server takes the difference in 32 bits.
    const std::int64_t difference = std::int64_t{maximum} - minimum;
    refuseUnless(difference == static_cast<std::int32_t>(difference), record,
                 "has a range wider than 32 bits");
    setScaling(record, Scaling::IntRange);
    record.intMinimum = minimum;
    record.intMaximum = maximum;
    return *this;
}

Input& Input::scaledByFloatRange(float minimum, float maximum) {
    refuseScalingUnlessFloat(record);
    setScaling(record, Scaling::FloatRange);
    record.floatMinimum = minimum;
    record.floatMaximum = maximum;
    return *this;
}

Input& Input::scaledByDatarefs(std::string minimum, std::string maximum) {
    setRange(record, RangeType::Float, std::move(minimum), std::move(maximum), 0);
    return *this;
}

Input& Input::scaledByDatarefElements(std::string minimum, std::string maximum,
                                      std::int32_t element) {
    setRange(record, RangeType::FloatElement, std::move(minimum), std::move(maximum), element);
    return *this;
}

Input& Input::skippedWhenOne() {
    setCondition(record, Condition::One);
    return *this;
}

Input& Input::skippedWhenZero() {
    setCondition(record, Condition::Zero);
    return *this;
}

Input& Input::skippedWhilePositive(ConditionDataref dataref) {
    setCondition(record, Condition::DatarefPositive, std::move(dataref));
    return *this;
}

Input& Input::skippedWhileZero(ConditionDataref dataref) {
    setCondition(record, Condition::DatarefZero, std::move(dataref));
    return *this;
}

Input& Input::fixed(std::int32_t value) {
    refuseUnless(!isFloat(record), record, "is a float and cannot be fixed to an int");
    refuseUnless(!isOf(record, Target::IntElement) || value == 1, record,
                 "is an element of an int array and can be fixed to 1 only");
    record.usesFixed = true;
    record.fixedInt = value;
    return *this;
}

Input& Input::fixed(float value) {
    refuseUnless(isFloat(record), record, "is no float and cannot be fixed to one");
    record.usesFixed = true;
    record.fixedFloat = value;
    return *this;
}

Input& Input::held() {
    refuseUnless(isOf(record, Target::Command), record, "is no command and cannot be held");
    refuseUnless(record.repeatMs == 0, record, "has a repeat interval and cannot be held");
    record.isHeld = true;
    return *this;
}

Input& Input::repeatedEvery(std::chrono::milliseconds interval) {
    refuseUnless(isOf(record, Target::Command), record, "is no command and cannot be repeated");
    refuseUnless(!record.isHeld, record, "is held and cannot have a repeat interval");
    refuseUnless(
        interval.count() >= 1 && interval.count() <= std::numeric_limits<std::int32_t>::max(),
        record, "cannot have a repeat interval of " + std::to_string(interval.count()) + " ms");
    record.repeatMs = static_cast<std::int32_t>(interval.count());
    return *this;
}

} // namespace orvane::tarnel
