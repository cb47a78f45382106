#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/Bytes.h"

// What a Tarnel client sends, written at literal offsets, independent of the plugin's own records.
// Every field is zero or empty unless a test sets it.

// The identification of the protocol, which begins a request.
inline const Bytes kTarnel{0x11, 0x22, 0x33, 0x44};

// Types of inputs and outputs.
struct RecordType {
    enum : std::int32_t { Int = 1, Float = 2, IntArray = 3, FloatArray = 4, Command = 6 };
};
struct RecordScaling {
    enum : std::int32_t { IntRange = 1, FloatRange = 2, DatarefRange = 3 };
};

struct InputRecord {
    std::int32_t action = 0;
    std::int32_t reserved4 = 0;
    std::int32_t reserved8 = 0;
    std::int32_t targetIndex = 0;
    std::int32_t fixedInt = 0;
    std::int32_t repeatInterval = 0;
    std::int32_t intMinimum = 0;
    std::int32_t intMaximum = 0;
    std::int32_t targetType = 0;
    std::int32_t scaling = 0;
    std::int32_t rangeType = 0;
    std::int32_t rangeIndex = 0;
    std::int32_t condition = 0;
    float fixedFloat = 0.0F;
    float floatMinimum = 0.0F;
    float floatMaximum = 0.0F;
    std::int32_t useFixed = 0;
    std::int32_t hold = 0;
    std::int32_t reserved72 = 0;
    std::int32_t held = 0;
    std::string rangeMinimumName{};
    std::string rangeMaximumName{};
    std::string target{};
    std::string conditionName{};
    std::int32_t conditionType = 0;
    std::int32_t conditionIndex = 0;
};

struct OutputRecord {
    std::uint32_t id = 0;
    std::string name{};
    std::int32_t type = 0;
    std::int32_t first = 0;
    std::int32_t count = 0;
};

// 488 and 116 bytes. A text longer than its field of 100 bytes is cut to the field.
Bytes toBytes(const InputRecord& record);
Bytes toBytes(const OutputRecord& record);

// Whole messages, without the protocol's identification.
Bytes versionMessage();
Bytes definitionsMessage(const std::vector<InputRecord>& inputs,
                         const std::vector<OutputRecord>& outputs);
// Items of action identifier and value.
Bytes dataMessage(const std::vector<std::pair<std::uint32_t, std::int32_t>>& items);
// The identification, and the message.
Bytes tarnelRequest(const Bytes& message);
