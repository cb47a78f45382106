#include "tools/demo/TarnelWire.h"

#include <bit>
#include <limits>
#include <utility>

namespace demo {

namespace {

constexpr std::uint32_t kIdentification = 0x44332211;
constexpr std::uint32_t kVersionSpecifier = 0xB5006BB1;
constexpr std::uint32_t kDefinitionsSpecifier = 0xDDEEFFC0;
constexpr std::uint32_t kDataSpecifier = 0xEFBEADDE;

constexpr std::size_t kNameSize = 100;
constexpr std::size_t kWordSize = 4;
constexpr unsigned kByteBits = 8;

class Writer final {
public:
    void Unsigned(std::uint32_t value) {
        for (std::size_t i = 0; i < kWordSize; ++i) {
            bytes.push_back(static_cast<std::uint8_t>(value >> (kByteBits * i)));
        }
    }

    void Signed(std::int32_t value) { Unsigned(static_cast<std::uint32_t>(value)); }

    template <typename Enum>
    void Code(Enum value) {
        Signed(static_cast<std::int32_t>(value));
    }

    void Real(float value) { Unsigned(std::bit_cast<std::uint32_t>(value)); }

    void Name(const std::string& name) {
        if (name.size() > kNameSize) {
            throw std::invalid_argument("name of " + std::to_string(name.size()) +
                                        " bytes, at most " + std::to_string(kNameSize) +
                                        " fit: " + name);
        }
        bytes.insert(bytes.end(), name.begin(), name.end());
        bytes.insert(bytes.end(), kNameSize - name.size(), 0);
    }

    void Count(std::size_t count) {
        if (count > std::numeric_limits<std::uint32_t>::max()) {
            throw std::invalid_argument("more records than a message can count");
        }
        Unsigned(static_cast<std::uint32_t>(count));
    }

    Bytes Take() { return std::move(bytes); }

private:
    Bytes bytes;
};

void writeInput(Writer& writer, const InputRecord& record) {
    writer.Signed(record.actionId);
    writer.Signed(record.reservedA);
    writer.Signed(record.reservedB);
    writer.Signed(record.targetIndex);
    writer.Signed(record.fixedInt);
    writer.Signed(record.repeatIntervalMs);
    writer.Signed(record.intRangeMinimum);
    writer.Signed(record.intRangeMaximum);
    writer.Code(record.targetType);
    writer.Code(record.scaling);
    writer.Code(record.rangeType);
    writer.Signed(record.rangeIndex);
    writer.Code(record.condition);
    writer.Real(record.fixedFloat);
    writer.Real(record.floatRangeMinimum);
    writer.Real(record.floatRangeMaximum);
    writer.Signed(record.useFixedValue);
    writer.Signed(record.holdCommand);
    writer.Signed(record.reservedC);
    writer.Signed(record.commandHeld);
    writer.Name(record.rangeMinimumName);
    writer.Name(record.rangeMaximumName);
    writer.Name(record.targetName);
    writer.Name(record.conditionName);
    writer.Code(record.conditionType);
    writer.Signed(record.conditionIndex);
}

void writeOutput(Writer& writer, const OutputRecord& record) {
    writer.Signed(record.outputId);
    writer.Name(record.name);
    writer.Code(record.type);
    writer.Signed(record.firstElement);
    writer.Signed(record.elementCount);
}

} // namespace

Bytes EncodeIdentification() {
    Writer writer;
    writer.Unsigned(kIdentification);
    return writer.Take();
}

Bytes EncodeVersion() {
    Writer writer;
    writer.Unsigned(kIdentification);
    writer.Unsigned(kVersionSpecifier);
    return writer.Take();
}

Bytes EncodeDefinitions(std::span<const InputRecord> inputs,
                        std::span<const OutputRecord> outputs) {
    Writer writer;
    writer.Unsigned(kIdentification);
    writer.Unsigned(kDefinitionsSpecifier);
    writer.Count(InputRecord::kWireSize);
    writer.Count(inputs.size());
    writer.Count(OutputRecord::kWireSize);
    writer.Count(outputs.size());
    for (const InputRecord& input : inputs) {
        writeInput(writer, input);
    }
    for (const OutputRecord& output : outputs) {
        writeOutput(writer, output);
    }
    return writer.Take();
}

Bytes EncodeData(std::span<const DataItem> items) {
    Writer writer;
    writer.Unsigned(kIdentification);
    writer.Unsigned(kDataSpecifier);
    writer.Count(DataItem::kWireSize);
    writer.Count(items.size());
    for (const DataItem& item : items) {
        writer.Unsigned(item.actionId);
        writer.Signed(item.value);
    }
    return writer.Take();
}

} // namespace demo
