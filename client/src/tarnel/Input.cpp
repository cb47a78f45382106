#include "orvane/tarnel/Input.h"

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <utility>

#include "tarnel/InputRecord.h"
#include "tarnel/Names.h"

namespace orvane::tarnel {

namespace {

using Condition = InputRecord::Condition;
using Range = InputRecord::Range;
using Target = InputRecord::Target;

void refuseUnless(bool allowed, const InputRecord& record, const std::string& what) {
    if (!allowed) {
        throw std::invalid_argument("the input of " + record.target + " " + what);
    }
}

bool isFloat(const InputRecord& record) {
    return record.targetType == InputRecord::TargetFloat ||
           record.targetType == InputRecord::TargetFloatElement;
}

void refuseScalingUnlessFloat(const InputRecord& record) {
    refuseUnless(isFloat(record), record, "is not a float and cannot be scaled");
}

InputRecord makeRecord(ActionId action, Target type, std::string target, std::int32_t element = 0) {
    InputRecord record;
    record.action = action;
    record.targetType = type;
    record.target = checkedName(std::move(target));
    record.targetElement = checkedElement(element, record.target);
    return record;
}

void setRange(InputRecord& record, Range type, std::string minimum, std::string maximum,
              std::int32_t element) {
    refuseScalingUnlessFloat(record);
    record.rangeMinimum = checkedName(std::move(minimum));
    record.rangeMaximum = checkedName(std::move(maximum));
    record.rangeElement = checkedElement(element, record.rangeMinimum);
    record.rangeType = type;
    record.scaling = InputRecord::ScalingDatarefs;
}

void setCondition(InputRecord& record, Condition condition, ConditionDataref dataref) {
    using Type = ConditionDataref::Type;
    refuseUnless(dataref.type >= Type::Int && dataref.type <= Type::FloatElement, record,
                 "has a condition of an unknown type");
    record.conditionDataref = checkedName(std::move(dataref.name));
    record.conditionElement = checkedElement(dataref.element, record.conditionDataref);
    record.conditionType = static_cast<std::int32_t>(dataref.type);
    record.condition = condition;
}

void setCondition(InputRecord& record, Condition condition) {
    record.condition = condition;
    record.conditionDataref.clear();
    record.conditionType = 0;
    record.conditionElement = 0;
}

} // namespace

const InputRecord& inputRecordOf(const Input& input) {
    return *input.record;
}

Input::Input(InputRecord record) : record(std::make_shared<const InputRecord>(std::move(record))) {}

// A change that throws leaves the input unchanged.
template <typename Change>
Input& Input::refine(Change change) {
    InputRecord refined = *record;
    change(refined);
    record = std::make_shared<const InputRecord>(std::move(refined));
    return *this;
}

ActionId Input::action() const {
    return record->action;
}

const std::string& Input::target() const {
    return record->target;
}

std::int32_t Input::element() const {
    return record->targetElement;
}

Input Input::toInt(ActionId action, std::string dataref) {
    return Input(makeRecord(action, InputRecord::TargetInt, std::move(dataref)));
}

Input Input::toFloat(ActionId action, std::string dataref) {
    return Input(makeRecord(action, InputRecord::TargetFloat, std::move(dataref)));
}

Input Input::toIntElement(ActionId action, std::string dataref, std::int32_t element) {
    return Input(makeRecord(action, InputRecord::TargetIntElement, std::move(dataref), element));
}

Input Input::toFloatElement(ActionId action, std::string dataref, std::int32_t element) {
    return Input(makeRecord(action, InputRecord::TargetFloatElement, std::move(dataref), element));
}

Input Input::toCommand(ActionId action, std::string command) {
    return Input(makeRecord(action, InputRecord::TargetCommand, std::move(command)));
}

Input& Input::scaledByIntRange(std::int32_t minimum, std::int32_t maximum) {
    return refine([&](InputRecord& refined) {
        refuseScalingUnlessFloat(refined);
        // The server takes the difference in 32 bits.
        const std::int64_t difference = std::int64_t{maximum} - minimum;
        refuseUnless(difference == static_cast<std::int32_t>(difference), refined,
                     "has a range wider than 32 bits");
        refined.scaling = InputRecord::ScalingIntRange;
        refined.intMinimum = minimum;
        refined.intMaximum = maximum;
    });
}

Input& Input::scaledByFloatRange(float minimum, float maximum) {
    return refine([&](InputRecord& refined) {
        refuseScalingUnlessFloat(refined);
        refined.scaling = InputRecord::ScalingFloatRange;
        refined.floatMinimum = minimum;
        refined.floatMaximum = maximum;
    });
}

Input& Input::scaledByDatarefs(std::string minimum, std::string maximum) {
    return refine([&](InputRecord& refined) {
        setRange(refined, InputRecord::RangeFloat, std::move(minimum), std::move(maximum), 0);
    });
}

Input& Input::scaledByDatarefElements(std::string minimum, std::string maximum,
                                      std::int32_t element) {
    return refine([&](InputRecord& refined) {
        setRange(refined, InputRecord::RangeFloatElement, std::move(minimum), std::move(maximum),
                 element);
    });
}

Input& Input::skippedWhenOne() {
    return refine([](InputRecord& refined) { setCondition(refined, InputRecord::NotWhenOne); });
}

Input& Input::skippedWhenZero() {
    return refine([](InputRecord& refined) { setCondition(refined, InputRecord::NotWhenZero); });
}

Input& Input::skippedWhilePositive(ConditionDataref dataref) {
    return refine([&](InputRecord& refined) {
        setCondition(refined, InputRecord::NotWhilePositive, std::move(dataref));
    });
}

Input& Input::skippedWhileZero(ConditionDataref dataref) {
    return refine([&](InputRecord& refined) {
        setCondition(refined, InputRecord::NotWhileZero, std::move(dataref));
    });
}

Input& Input::fixed(std::int32_t value) {
    return refine([&](InputRecord& refined) {
        refuseUnless(!isFloat(refined), refined, "is a float and cannot be fixed to an int");
        refuseUnless(refined.targetType != InputRecord::TargetIntElement || value == 1, refined,
                     "is an element of an int array and can be fixed to 1 only");
        refined.usesFixed = true;
        refined.fixedInt = value;
    });
}

Input& Input::fixed(float value) {
    return refine([&](InputRecord& refined) {
        refuseUnless(isFloat(refined), refined, "is not a float and cannot be fixed to one");
        refined.usesFixed = true;
        refined.fixedFloat = value;
    });
}

Input& Input::held() {
    return refine([](InputRecord& refined) {
        refuseUnless(refined.targetType == InputRecord::TargetCommand, refined,
                     "is not a command and cannot be held");
        refuseUnless(refined.repeatMs == 0, refined, "has a repeat interval and cannot be held");
        refined.isHeld = true;
    });
}

Input& Input::repeatedEvery(std::chrono::milliseconds interval) {
    return refine([&](InputRecord& refined) {
        refuseUnless(refined.targetType == InputRecord::TargetCommand, refined,
                     "is not a command and cannot be repeated");
        refuseUnless(!refined.isHeld, refined, "is held and cannot have a repeat interval");
        refuseUnless(
            interval.count() >= 1 && interval.count() <= std::numeric_limits<std::int32_t>::max(),
            refined,
            "cannot have a repeat interval of " + std::to_string(interval.count()) + " ms");
        refined.repeatMs = static_cast<std::int32_t>(interval.count());
    });
}

} // namespace orvane::tarnel
