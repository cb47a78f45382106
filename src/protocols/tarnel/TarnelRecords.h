#pragma once

#include <cstddef>
#include <cstdint>

// The records of a Tarnel message, and the constants in them.
//
// The structures have the layout of the wire: no padding, little-endian values, and names as
// zero-terminated text in fixed fields. Offsets in the comments are bytes from the record's start.

// The first 32 bits of every message.
inline constexpr std::uint32_t CMD_VERSION = 0xB5006BB1;
inline constexpr std::uint32_t CMD_DEFINITIONS = 0xDDEEFFC0;
inline constexpr std::uint32_t CMD_DATA = 0xEFBEADDE;

inline constexpr std::size_t kTarnelNameSize = 100;

// The type of an input's target, of an output, and of the datarefs of a range or a condition.
namespace TarnelType {
inline constexpr std::int32_t kInt = 1;
inline constexpr std::int32_t kFloat = 2;
inline constexpr std::int32_t kIntArray = 3;
inline constexpr std::int32_t kFloatArray = 4;
inline constexpr std::int32_t kCommand = 6;
} // namespace TarnelType

// How a raw axis value of 0 to 65535 becomes a float. Anything else scales to 0..1.
namespace TarnelScaling {
inline constexpr std::int32_t kIntRange = 1;
inline constexpr std::int32_t kFloatRange = 2;
inline constexpr std::int32_t kDatarefRange = 3;
} // namespace TarnelScaling

// When a received value is not applied. Anything else applies it always.
namespace TarnelCondition {
inline constexpr std::int32_t kSkipValueOne = 1;
inline constexpr std::int32_t kSkipValueZero = 2;
inline constexpr std::int32_t kSkipDatarefPositive = 3;
inline constexpr std::int32_t kSkipDatarefZero = 4;
} // namespace TarnelCondition

// DEFINITIONS: this header, the input records, the output records. The sizes enter only the
// completeness check; records are always read at their own fixed size.
struct DefinitionHeaderStruct {
    std::uint32_t specifier;
    std::uint32_t inputStructSize;
    std::uint32_t inputStructCount;
    std::uint32_t outputStructSize;
    std::uint32_t outputStructCount;
};
static_assert(sizeof(DefinitionHeaderStruct) == 20);

// Binds an action to one target in the simulator.
struct InputDefinitionStruct {
    std::int32_t actionIdentifier;
    std::int32_t reserved4;
    std::int32_t reserved8;
    std::int32_t targetIndex;
    std::int32_t fixedIntValue;
    std::int32_t repeatInterval; // milliseconds; below 1 means no throttling
    std::int32_t intRangeMinimum;
    std::int32_t intRangeMaximum;
    std::int32_t targetType;  // TarnelType
    std::int32_t scalingMode; // TarnelScaling
    std::int32_t rangeType;   // TarnelType of both range datarefs: float or float array
    std::int32_t rangeIndex;  // element of a float array
    std::int32_t condition;   // TarnelCondition
    float fixedFloatValue;
    float floatRangeMinimum;
    float floatRangeMaximum;
    std::int32_t useFixedValue; // non-zero: the received value is ignored
    std::int32_t holdCommand;   // non-zero: begun while pressed, ended when released
    std::int32_t reserved72;
    std::int32_t commandHeld; // run-time state; its initial value is the client's
    char rangeMinimumName[kTarnelNameSize];
    char rangeMaximumName[kTarnelNameSize];
    char targetName[kTarnelNameSize];
    char conditionName[kTarnelNameSize];
    std::int32_t conditionType; // TarnelType
    std::int32_t conditionIndex;
};
static_assert(sizeof(InputDefinitionStruct) == 488);
static_assert(offsetof(InputDefinitionStruct, targetType) == 32);
static_assert(offsetof(InputDefinitionStruct, useFixedValue) == 64);
static_assert(offsetof(InputDefinitionStruct, rangeMinimumName) == 80);
static_assert(offsetof(InputDefinitionStruct, conditionType) == 480);

// Names a value to report.
struct OutputDefinitionStruct {
    std::uint32_t outputIdentifier;
    char name[kTarnelNameSize];
    std::int32_t type; // TarnelType
    std::int32_t firstElement;
    std::int32_t elementCount;
};
static_assert(sizeof(OutputDefinitionStruct) == 116);
static_assert(offsetof(OutputDefinitionStruct, type) == 104);

// DATA: this header and the items.
struct DataHeaderStruct {
    std::uint32_t specifier;
    std::uint32_t structSize;
    std::uint32_t structCount;
};
static_assert(sizeof(DataHeaderStruct) == 12);

// One item: an action and the value for it, read as a little-endian int32.
struct HardwareDataStruct {
    std::uint32_t actionIdentifier;
    unsigned char value[4];
};
static_assert(sizeof(HardwareDataStruct) == 8);
