#include "tarnel/Wire.h"

#include <string>
#include <utility>

#include "ByteReader.h"
#include "ByteWriter.h"
#include "UnexpectedAnswer.h"
#include "tarnel/InputRecord.h"

namespace orvane::tarnel::wire {

namespace {

using detail::ByteReader;
using detail::Bytes;
using detail::ByteWriter;
using detail::UnexpectedAnswer;

constexpr std::uint32_t kIdentification = 0x44332211;
constexpr std::uint32_t kVersion = 0xB5006BB1;
constexpr std::uint32_t kDefinitions = 0xDDEEFFC0;
constexpr std::uint32_t kData = 0xEFBEADDE;
constexpr std::uint32_t kAircraft = 0xFFFF;
constexpr std::uint32_t kWord = 4;
constexpr std::uint32_t kItemSize = 8;
constexpr std::size_t kNameField = 100;
constexpr std::size_t kReserved = 8; // between two fields, twice in an input
constexpr std::size_t kEntryHead = 8;

ByteWriter beginRequest(std::uint32_t message) {
    ByteWriter writer;
    writer.writeUInt32(kIdentification);
    writer.writeUInt32(message);
    return writer;
}

void writeCount(ByteWriter& writer, std::size_t recordSize, std::size_t count) {
    writer.writeUInt32(static_cast<std::uint32_t>(recordSize));
    writer.writeUInt32(static_cast<std::uint32_t>(count));
}

// In the order of the record.
void writeInput(ByteWriter& writer, const InputRecord& input) {
    writer.writeInt32(input.action);
    writer.writeZeros(kReserved);
    writer.writeInt32(input.targetElement);
    writer.writeInt32(input.fixedInt);
    writer.writeInt32(input.repeatMs);
    writer.writeInt32(input.intMinimum);
    writer.writeInt32(input.intMaximum);
    writer.writeInt32(input.targetType);
    writer.writeInt32(input.scaling);
    writer.writeInt32(input.rangeType);
    writer.writeInt32(input.rangeElement);
    writer.writeInt32(input.condition);
    writer.writeFloat(input.fixedFloat);
    writer.writeFloat(input.floatMinimum);
    writer.writeFloat(input.floatMaximum);
    writer.writeInt32(input.usesFixed ? 1 : 0);
    writer.writeInt32(input.isHeld ? 1 : 0);
    writer.writeZeros(kReserved);
    writer.writeField(input.rangeMinimum, kNameField);
    writer.writeField(input.rangeMaximum, kNameField);
    writer.writeField(input.target, kNameField);
    writer.writeField(input.conditionDataref, kNameField);
    writer.writeInt32(input.conditionType);
    writer.writeInt32(input.conditionElement);
}

void writeOutput(ByteWriter& writer, const Output& output) {
    writer.writeUInt32(output.id());
    writer.writeField(output.name(), kNameField);
    writer.writeInt32(static_cast<std::int32_t>(output.type()));
    writer.writeInt32(output.firstElement());
    writer.writeInt32(output.count());
}

std::size_t valueSize(const Output& output) {
    if (output.type() == OutputType::Command) {
        return 1;
    }
    return kWord * static_cast<std::size_t>(output.count());
}

std::size_t shortestAnswer(std::span<const Output> outputs) {
    std::size_t size = kAircraftSize;
    for (const Output& output : outputs) {
        size += entrySize(output);
    }
    return size;
}

bool readCommandState(ByteReader& reader) {
    const std::uint8_t state = reader.readUInt8();
    if (state > 1) {
        throw UnexpectedAnswer("a command's state of 0 or 1", std::to_string(state));
    }
    return state == 1;
}

template <typename T, typename Read>
Value readElements(std::int32_t count, Read read) {
    std::vector<T> elements;
    elements.reserve(static_cast<std::size_t>(count));
    for (std::int32_t element = 0; element < count; ++element) {
        elements.push_back(read());
    }
    return elements;
}

Value readValue(ByteReader& reader, const Output& output) {
    switch (output.type()) {
    case OutputType::Int:
        return reader.readInt32();
    case OutputType::Float:
        return reader.readFloat();
    case OutputType::IntArray:
        return readElements<std::int32_t>(output.count(), [&] { return reader.readInt32(); });
    case OutputType::FloatArray:
        return readElements<float>(output.count(), [&] { return reader.readFloat(); });
    case OutputType::Command:
        break;
    }
    return readCommandState(reader);
}

Value readEntry(ByteReader& reader, const Output& output, bool isAircraftLoaded) {
    constexpr const char* kWhat = "the entry of output";
    reader.expectUInt32(output.id(), kWhat);
    if (!isAircraftLoaded && output.type() == OutputType::Command) {
        reader.expectUInt32(output.id(), kWhat);
    }
    reader.expectUInt32(static_cast<std::uint32_t>(valueSize(output)), "a value of length");
    return readValue(reader, output);
}

// Only commands differ: without an aircraft, their entries have the identifier twice.
bool hasAircraft(std::size_t size, std::span<const Output> outputs) {
    const std::size_t shortest = shortestAnswer(outputs);
    const std::size_t longest = longestAnswer(outputs);
    if (size != shortest && size != longest) {
        const std::string orElse =
            longest == shortest ? "" : " or, without an aircraft, " + std::to_string(longest);
        throw UnexpectedAnswer("an answer of " + std::to_string(shortest) + orElse + " bytes",
                               std::to_string(size));
    }
    return size == shortest;
}

} // namespace

Bytes versionRequest() {
    return beginRequest(kVersion).bytes();
}

Bytes definitionsRequest(const Definitions& definitions) {
    ByteWriter writer = beginRequest(kDefinitions);
    writeCount(writer, kInputSize, definitions.inputs().size());
    writeCount(writer, kOutputSize, definitions.outputs().size());
    for (const Input& input : definitions.inputs()) {
        writeInput(writer, inputRecordOf(input));
    }
    for (const Output& output : definitions.outputs()) {
        writeOutput(writer, output);
    }
    return writer.bytes();
}

Bytes dataRequest(std::span<const Item> items) {
    ByteWriter writer = beginRequest(kData);
    writeCount(writer, kItemSize, items.size());
    for (const Item& item : items) {
        writer.writeInt32(item.action);
        writer.writeInt32(item.value);
    }
    return writer.bytes();
}

std::size_t entrySize(const Output& output) {
    return kEntryHead + valueSize(output);
}

std::size_t longestEntry(const Output& output) {
    return entrySize(output) + (output.type() == OutputType::Command ? kWord : 0);
}

std::size_t longestAnswer(std::span<const Output> outputs) {
    std::size_t size = kAircraftSize;
    for (const Output& output : outputs) {
        size += longestEntry(output);
    }
    return size;
}

Version readVersion(std::span<const std::uint8_t> payload) {
    ByteReader reader(payload);
    reader.expectUInt32(kVersion, "the message");
    Version version;
    for (std::uint8_t& part : version.parts) {
        part = reader.readUInt8();
    }
    version.revision = reader.readUInt32();
    reader.expectEnd();
    return version;
}

Answer readAnswer(std::span<const std::uint8_t> payload, std::span<const Output> outputs) {
    const bool isAircraftLoaded = hasAircraft(payload.size(), outputs);
    ByteReader reader(payload);
    Answer answer;
    answer.outputs.reserve(outputs.size());
    for (const Output& output : outputs) {
        answer.outputs.push_back({output.id(), readEntry(reader, output, isAircraftLoaded)});
    }
    reader.expectUInt32(kAircraft, "the entry of the aircraft,");
    reader.expectUInt32(kWord, "an aircraft's id of length");
    answer.aircraftId = reader.readUInt32();
    reader.expectEnd();
    return answer;
}

} // namespace orvane::tarnel::wire
