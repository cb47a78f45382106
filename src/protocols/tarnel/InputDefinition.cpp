#include "protocols/tarnel/InputDefinition.h"

#include <cstring>

namespace {

constexpr float kFullScale = 65535.0F;

// An unthrottled press of these four actions runs its command twice; clients rely on it.
constexpr std::int32_t kFirstDoubleRunAction = 1002;
constexpr std::int32_t kLastDoubleRunAction = 1005;

// Axis scaling is single precision throughout; clients compare against values computed this way.
float scale(float raw, float minimum, float maximum) {
    return ((maximum - minimum) / kFullScale) * raw + minimum;
}

float scaleToIntRange(float raw, std::int32_t minimum, std::int32_t maximum) {
    // The difference is an int, which wraps if the range is wider.
    const auto difference = static_cast<std::int32_t>(static_cast<std::uint32_t>(maximum) -
                                                      static_cast<std::uint32_t>(minimum));
    return (static_cast<float>(difference) / kFullScale) * raw + static_cast<float>(minimum);
}

int readIntElement(XPLMDataRef dataref, int index) {
    int value = 0;
    XPLMGetDatavi(dataref, &value, index, 1);
    return value;
}

float readFloatElement(XPLMDataRef dataref, int index) {
    float value = 0.0F;
    XPLMGetDatavf(dataref, &value, index, 1);
    return value;
}

} // namespace

InputDefinition::InputDefinition(InputDefinitionStruct record) : record(record) {
    if (record.targetType == TarnelType::kCommand) {
        command = XPLMFindCommand(record.targetName);
    } else {
        target = XPLMFindDataRef(record.targetName);
    }
    if (record.scalingMode == TarnelScaling::kDatarefRange) {
        rangeMinimum = XPLMFindDataRef(record.rangeMinimumName);
        rangeMaximum = XPLMFindDataRef(record.rangeMaximumName);
    }
    if (record.condition == TarnelCondition::kSkipDatarefPositive ||
        record.condition == TarnelCondition::kSkipDatarefZero) {
        conditionDataref = XPLMFindDataRef(record.conditionName);
    }
}

void InputDefinition::ExecuteAction(void* value, unsigned long nowMs) {
    std::int32_t received = 0;
    std::memcpy(&received, value, sizeof(received));
    if (isSkipped(received)) {
        return;
    }
    switch (record.targetType) {
    case TarnelType::kInt:
        setInt(received);
        break;
    case TarnelType::kFloat:
        setFloat(received);
        break;
    case TarnelType::kIntArray:
        setIntArrayElement(received);
        break;
    case TarnelType::kFloatArray:
        setFloatArrayElement(received);
        break;
    case TarnelType::kCommand:
        runCommand(received, nowMs);
        break;
    default:
        break;
    }
}

bool InputDefinition::isSkipped(std::int32_t value) const {
    switch (record.condition) {
    case TarnelCondition::kSkipValueOne:
        return value == 1;
    case TarnelCondition::kSkipValueZero:
        return value == 0;
    case TarnelCondition::kSkipDatarefPositive:
        return isConditionDatarefPositive();
    case TarnelCondition::kSkipDatarefZero:
        return isConditionDatarefZero();
    default:
        return false;
    }
}

bool InputDefinition::isConditionDatarefZero() const {
    switch (record.conditionType) {
    case TarnelType::kInt:
        return XPLMGetDatai(conditionDataref) == 0;
    case TarnelType::kFloat:
        return XPLMGetDataf(conditionDataref) == 0.0F;
    case TarnelType::kIntArray:
        return readIntElement(conditionDataref, record.conditionIndex) == 0;
    case TarnelType::kFloatArray:
        return readFloatElement(conditionDataref, record.conditionIndex) == 0.0F;
    default:
        return false;
    }
}

bool InputDefinition::isConditionDatarefPositive() const {
    switch (record.conditionType) {
    case TarnelType::kInt:
        return XPLMGetDatai(conditionDataref) > 0;
    case TarnelType::kFloat:
        return XPLMGetDataf(conditionDataref) > 0.0F;
    case TarnelType::kIntArray:
        return readIntElement(conditionDataref, record.conditionIndex) > 0;
    case TarnelType::kFloatArray:
        return readFloatElement(conditionDataref, record.conditionIndex) > 0.0F;
    default:
        return false;
    }
}

void InputDefinition::setInt(std::int32_t value) {
    XPLMSetDatai(target, record.useFixedValue != 0 ? record.fixedIntValue : value);
}

void InputDefinition::setIntArrayElement(std::int32_t value) {
    // With a fixed value the element gets the flag itself, not the fixed int value as an int target
    // does. Clients rely on the difference.
    std::int32_t* const source = record.useFixedValue != 0 ? &record.useFixedValue : &value;
    XPLMSetDatavi(target, source, record.targetIndex, 1);
}

void InputDefinition::setFloat(std::int32_t value) {
    XPLMSetDataf(target, floatValue(value));
}

void InputDefinition::setFloatArrayElement(std::int32_t value) {
    float scaled = floatValue(value);
    XPLMSetDatavf(target, &scaled, record.targetIndex, 1);
}

float InputDefinition::floatValue(std::int32_t value) const {
    if (record.useFixedValue != 0) {
        return record.fixedFloatValue;
    }
    const auto raw = static_cast<float>(value);
    switch (record.scalingMode) {
    case TarnelScaling::kIntRange:
        return scaleToIntRange(raw, record.intRangeMinimum, record.intRangeMaximum);
    case TarnelScaling::kFloatRange:
        return scale(raw, record.floatRangeMinimum, record.floatRangeMaximum);
    case TarnelScaling::kDatarefRange:
        return scaleToDatarefRange(raw);
    default:
        return raw / kFullScale;
    }
}

float InputDefinition::scaleToDatarefRange(float raw) const {
    if (record.rangeType != TarnelType::kFloat && record.rangeType != TarnelType::kFloatArray) {
        return raw / kFullScale;
    }
    float minimum = readRangeDataref(rangeMinimum);
    const float maximum = readRangeDataref(rangeMaximum);
    const bool bothZero = minimum == 0.0F && maximum == 0.0F;
    if (!bothZero && minimum == maximum) {
        // One dataref for both ends means a range symmetric around zero.
        minimum = -minimum;
    }
    return scale(raw, minimum, maximum);
}

float InputDefinition::readRangeDataref(XPLMDataRef dataref) const {
    return record.rangeType == TarnelType::kFloat ? XPLMGetDataf(dataref)
                                                  : readFloatElement(dataref, record.rangeIndex);
}

void InputDefinition::runCommand(std::int32_t value, unsigned long nowMs) {
    const bool pressed = (record.useFixedValue != 0 ? record.fixedIntValue : value) == 1;
    if (record.holdCommand != 0) {
        holdCommand(pressed);
    } else if (pressed) {
        runCommandOnce(nowMs);
    }
}

void InputDefinition::runCommandOnce(unsigned long nowMs) {
    if (record.repeatInterval < 1) {
        XPLMCommandOnce(command);
        if (record.actionIdentifier >= kFirstDoubleRunAction &&
            record.actionIdentifier <= kLastDoubleRunAction) {
            XPLMCommandOnce(command);
        }
    } else if (nowMs - lastRunMs > static_cast<std::uint64_t>(record.repeatInterval)) {
        lastRunMs = nowMs;
        XPLMCommandOnce(command);
    }
}

void InputDefinition::holdCommand(bool pressed) {
    if (pressed && record.commandHeld == 0) {
        XPLMCommandBegin(command);
        record.commandHeld = 1;
    } else if (!pressed && record.commandHeld == 1) {
        XPLMCommandEnd(command);
        record.commandHeld = 0;
    }
}
