#pragma once

#include <cstdint>

#include "XPLMDataAccess.h"
#include "XPLMUtilities.h"
#include "protocols/tarnel/TarnelRecords.h"

// One target of an action: decides whether a received value is applied, scales it, and sets a
// dataref or runs a command.
//
// Names are resolved once, at construction; one that the simulator does not know is passed
// to it as null. Nothing is reported. A command still held when the definition
// is deleted is not ended.
class InputDefinition final {
public:
    explicit InputDefinition(InputDefinitionStruct record);
    InputDefinition(const InputDefinition&) = delete;
    InputDefinition& operator=(const InputDefinition&) = delete;

    // `value` points to 4 bytes that hold an int32. Raw axes run from 0 to 65535.
    void ExecuteAction(void* value, unsigned long nowMs);

private:
    bool isSkipped(std::int32_t value) const;
    bool isConditionDatarefZero() const;
    bool isConditionDatarefPositive() const;

    void setInt(std::int32_t value);
    void setIntArrayElement(std::int32_t value);
    void setFloat(std::int32_t value);
    void setFloatArrayElement(std::int32_t value);

    float floatValue(std::int32_t value) const;
    float scaleToDatarefRange(float raw) const;
    float readRangeDataref(XPLMDataRef dataref) const;

    void runCommand(std::int32_t value, unsigned long nowMs);
    void runCommandOnce(unsigned long nowMs);
    void holdCommand(bool pressed);

    InputDefinitionStruct record;
    XPLMDataRef target = nullptr;
    XPLMCommandRef command = nullptr;
    XPLMDataRef rangeMinimum = nullptr;
    XPLMDataRef rangeMaximum = nullptr;
    XPLMDataRef conditionDataref = nullptr;
    std::uint64_t lastRunMs = 0;
};
