#include "velmar/Wire.h"

#include <string>
#include <type_traits>
#include <variant>

#include "UnexpectedAnswer.h"

namespace orvane::velmar::wire {

namespace {

using detail::ByteReader;
using detail::ByteWriter;
using detail::UnexpectedAnswer;

enum class Packet : std::uint32_t {
    RegisterDataref = 1,
    UnregisterDataref = 2,
    RegisterCommand = 3,
    UnregisterCommand = 4,
    Read = 5,
    Write = 6,
    Run = 7,
    Poll = 8
};

// What a failure is about.
enum class Kind : std::uint32_t { Dataref = 1, Command = 2 };

constexpr std::uint32_t kIdentification = 0x88776655;
constexpr std::uint32_t kSuccess = 1;
constexpr std::uint32_t kFailure = 2;
constexpr std::size_t kWord = 4;
// The server ends its process if fewer bytes than the number, the length and eight characters
// follow the type of a command's registration.
constexpr std::size_t kShortestSafeName = 8;
constexpr std::size_t kPadding = 8;

void writeHead(ByteWriter& writer, Packet packet, Number number) {
    writer.writeUInt32(static_cast<std::uint32_t>(packet));
    writer.writeUInt32(number);
}

void writeName(ByteWriter& writer, std::string_view name) {
    writer.writeUInt8(static_cast<std::uint8_t>(name.size()));
    writer.writeText(name);
}

void writeElement(ByteWriter& writer, std::int32_t value) {
    writer.writeInt32(value);
}

void writeElement(ByteWriter& writer, float value) {
    writer.writeFloat(value);
}

void writeElement(ByteWriter& writer, std::uint8_t value) {
    writer.writeUInt8(value);
}

template <typename T>
void writeElement(ByteWriter& writer, const std::vector<T>& values) {
    for (const T value : values) {
        writeElement(writer, value);
    }
}

std::size_t lengthOf(const Value& value) {
    return std::visit(
        []<typename T>(const T& held) -> std::size_t {
            if constexpr (std::is_arithmetic_v<T>) {
                return sizeof held;
            } else {
                return kWord * held.size();
            }
        },
        value);
}

bool isArray(Type type) {
    return type == Type::IntArray || type == Type::FloatArray;
}

std::size_t lengthOf(const Dataref& dataref) {
    if (isArray(dataref.type)) {
        return kWord * dataref.size;
    }
    return dataref.type == Type::Byte ? 1 : kWord;
}

void readHead(ByteReader& reader, Packet packet, Number number) {
    reader.expectUInt32(static_cast<std::uint32_t>(packet), "a reply of type");
    reader.expectUInt32(number, "the reply to number");
}

bool readStatus(ByteReader& reader, Kind kind) {
    const std::uint32_t status = reader.readUInt32();
    if (status == kSuccess) {
        return true;
    }
    if (status != kFailure) {
        throw UnexpectedAnswer("a status of 1 or 2", std::to_string(status));
    }
    reader.expectUInt32(static_cast<std::uint32_t>(kind), "a failure of kind");
    return false;
}

void readSuccess(ByteReader& reader, Packet packet, Number number) {
    readHead(reader, packet, number);
    reader.expectUInt32(kSuccess, "the status");
}

template <typename T, typename Read>
std::vector<T> readElements(std::uint32_t count, Read read) {
    std::vector<T> elements;
    elements.reserve(count);
    for (std::uint32_t element = 0; element < count; ++element) {
        elements.push_back(read());
    }
    return elements;
}

CommandState toState(std::uint8_t byte) {
    switch (byte) {
    case 0:
        return CommandState::Up;
    case 1:
        return CommandState::Down;
    case 2:
        return CommandState::Pressed;
    default:
        throw UnexpectedAnswer("a command's state of 0 to 2", std::to_string(byte));
    }
}

} // namespace

ByteWriter beginRequest() {
    ByteWriter writer;
    writer.writeUInt32(kIdentification);
    return writer;
}

void writeRegisterDataref(ByteWriter& writer, Number number, const Dataref& dataref) {
    writeHead(writer, Packet::RegisterDataref, number);
    writer.writeUInt32(static_cast<std::uint32_t>(dataref.type));
    writer.writeUInt32(isArray(dataref.type) ? dataref.size : 0);
    writeName(writer, dataref.name);
}

std::size_t registerDatarefSize(const Dataref& dataref) {
    return 4 * kWord + 1 + dataref.name.size();
}

void writeRegisterCommand(ByteWriter& writer, Number number, std::string_view name) {
    writeHead(writer, Packet::RegisterCommand, number);
    writeName(writer, name);
    if (name.size() < kShortestSafeName) {
        writer.writeZeros(kPadding);
    }
}

std::size_t registerCommandSize(std::string_view name) {
    return 2 * kWord + 1 + name.size() + (name.size() < kShortestSafeName ? kPadding : 0);
}

void writeUnregisterDataref(ByteWriter& writer, Number number) {
    writeHead(writer, Packet::UnregisterDataref, number);
}

void writeUnregisterCommand(ByteWriter& writer, Number number) {
    writeHead(writer, Packet::UnregisterCommand, number);
}

void writeRead(ByteWriter& writer, Number number) {
    writeHead(writer, Packet::Read, number);
}

void writeWrite(ByteWriter& writer, Number number, const Value& value) {
    writeHead(writer, Packet::Write, number);
    writer.writeUInt32(static_cast<std::uint32_t>(lengthOf(value)));
    std::visit([&writer](const auto& held) { writeElement(writer, held); }, value);
}

std::size_t writeSize(const Value& value) {
    return 3 * kWord + lengthOf(value);
}

void writeRun(ByteWriter& writer, Number number, Action action) {
    writeHead(writer, Packet::Run, number);
    writer.writeUInt8(static_cast<std::uint8_t>(action));
}

void writePoll(ByteWriter& writer) {
    writer.writeUInt32(static_cast<std::uint32_t>(Packet::Poll));
}

bool readRegisterDatarefReply(ByteReader& reader, Number number) {
    readHead(reader, Packet::RegisterDataref, number);
    return readStatus(reader, Kind::Dataref);
}

bool readRegisterCommandReply(ByteReader& reader, Number number) {
    readHead(reader, Packet::RegisterCommand, number);
    return readStatus(reader, Kind::Command);
}

void readUnregisterDatarefReply(ByteReader& reader, Number number) {
    readSuccess(reader, Packet::UnregisterDataref, number);
}

bool readUnregisterCommandReply(ByteReader& reader, Number number) {
    readHead(reader, Packet::UnregisterCommand, number);
    return readStatus(reader, Kind::Command);
}

Value readReadReply(ByteReader& reader, Number number, const Dataref& dataref) {
    readSuccess(reader, Packet::Read, number);
    reader.expectUInt32(static_cast<std::uint32_t>(lengthOf(dataref)), "a value of length");
    switch (dataref.type) {
    case Type::Int:
        return reader.readInt32();
    case Type::Float:
        return reader.readFloat();
    case Type::Byte:
        return reader.readUInt8();
    case Type::IntArray:
        return readElements<std::int32_t>(dataref.size, [&] { return reader.readInt32(); });
    case Type::FloatArray:
        break;
    }
    return readElements<float>(dataref.size, [&] { return reader.readFloat(); });
}

std::size_t readReplySize(const Dataref& dataref) {
    return 4 * kWord + lengthOf(dataref);
}

void readWriteReply(ByteReader& reader, Number number) {
    readSuccess(reader, Packet::Write, number);
}

std::vector<PollEntry> readPollReply(ByteReader& reader) {
    const std::uint32_t count = reader.readUInt32();
    std::vector<PollEntry> entries;
    for (std::uint32_t entry = 0; entry < count; ++entry) {
        const Number number = reader.readUInt32();
        entries.push_back({number, toState(reader.readUInt8())});
    }
    return entries;
}

std::size_t pollReplySize(std::size_t entries) {
    return kWord + entries * (kWord + 1);
}

} // namespace orvane::velmar::wire
