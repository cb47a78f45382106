#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

// The client's side of the Tarnel protocol: makes requests and reads answers.
//
// It is written on its own and shares nothing with the plugin, so that a mistake on one side cannot
// hide behind the same mistake on the other. Everything is little-endian and unpadded.
namespace demo {

using Bytes = std::vector<std::uint8_t>;

// An answer that no well-behaved server gives. The text says what was expected and what came.
class WireError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class ValueType : std::int32_t { Int = 1, Float, IntArray, FloatArray, Command = 6 };

// How an axis of 0..65535 becomes the value of a float target.
enum class Scaling : std::int32_t {
    None,         // 0..1
    IntRange,     // intRangeMinimum..intRangeMaximum
    FloatRange,   // floatRangeMinimum..floatRangeMaximum
    DatarefRange, // between the values of two datarefs; -x..x when both are x
};

// When a received value is left unused.
enum class Condition : std::int32_t {
    None,
    SkipOne,
    SkipZero,
    SkipIfDatarefPositive,
    SkipIfDatarefZero,
};

// What a value that arrives for `actionId` does to one target. Several records may name one action.
struct InputRecord {
    static constexpr std::size_t kWireSize = 488;

    std::int32_t actionId = 0;
    std::int32_t reservedA = 0;
    std::int32_t reservedB = 0;
    std::int32_t targetIndex = 0;
    std::int32_t fixedInt = 0;
    std::int32_t repeatIntervalMs = 0;
    std::int32_t intRangeMinimum = 0;
    std::int32_t intRangeMaximum = 0;
    ValueType targetType = ValueType::Int;
    Scaling scaling = Scaling::None;
    ValueType rangeType = ValueType::Float;
    std::int32_t rangeIndex = 0;
    Condition condition = Condition::None;
    float fixedFloat = 0.0F;
    float floatRangeMinimum = 0.0F;
    float floatRangeMaximum = 0.0F;
    std::int32_t useFixedValue = 0;
    std::int32_t holdCommand = 0;
    std::int32_t reservedC = 0;
    std::int32_t commandHeld = 0;
    // At most 100 bytes each; the server cuts them to 99.
    std::string rangeMinimumName{};
    std::string rangeMaximumName{};
    std::string targetName{};
    std::string conditionName{};
    ValueType conditionType = ValueType::Int;
    std::int32_t conditionIndex = 0;
};

// A value that every answer is to report.
struct OutputRecord {
    static constexpr std::size_t kWireSize = 116;

    std::int32_t outputId = 0;
    std::string name{};
    ValueType type = ValueType::Int;
    std::int32_t firstElement = 0;
    std::int32_t elementCount = 0;
};

// Value of one action: an axis from 0 to 65535, a switch of 0 or 1, or a plain number.
struct DataItem {
    static constexpr std::size_t kWireSize = 8;

    std::uint32_t actionId = 0;
    std::int32_t value = 0;
};

struct VersionAnswer {
    std::array<std::uint8_t, 4> version{};
    std::uint32_t number = 0;

    bool operator==(const VersionAnswer&) const = default;
};

// Nothing for an output whose type the server does not know; bool is the state of a command.
using Value = std::variant<std::monostate, std::int32_t, float, std::vector<std::int32_t>,
                           std::vector<float>, bool>;

struct OutputValue {
    std::uint32_t outputId = 0;
    Value value{};

    bool operator==(const OutputValue&) const = default;
};

struct OutputStream {
    // In the order of their declaration.
    std::vector<OutputValue> outputs{};
    // 0 while no aircraft is loaded.
    std::uint32_t aircraftId = 0;
    // Command entries came in the form that the server uses while no aircraft is loaded.
    bool commandIdsTwice = false;
};

// The 4 bytes that every request begins with. On their own they ask for an output stream.
Bytes EncodeIdentification();

// Whole requests, identification included. Names that are too long: std::invalid_argument.
Bytes EncodeVersion();
Bytes EncodeDefinitions(std::span<const InputRecord> inputs, std::span<const OutputRecord> outputs);
Bytes EncodeData(std::span<const DataItem> items);

// An answer frame is a header with the length of the payload, and the payload.
constexpr std::size_t kFrameHeaderSize = 4;
constexpr std::uint32_t kMaxPayloadSize = 0x0FFFFFFB;

// Length of the payload that follows `header`. WireError: longer than a server can send.
std::uint32_t DecodeFrameHeader(std::span<const std::uint8_t, kFrameHeaderSize> header);
// Payload of exactly one whole frame.
Bytes DecodeFrame(std::span<const std::uint8_t> frame);

VersionAnswer DecodeVersion(std::span<const std::uint8_t> payload);

// The stream carries no counts or types, so it can only be read by what was declared last.
OutputStream DecodeOutputs(std::span<const std::uint8_t> payload,
                           std::span<const OutputRecord> declared);

} // namespace demo
