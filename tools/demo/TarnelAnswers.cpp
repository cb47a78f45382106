#include "tools/demo/TarnelWire.h"

#include <bit>
#include <cstdio>

namespace demo {

namespace {

constexpr std::uint32_t kVersionSpecifier = 0xB5006BB1;
constexpr std::size_t kVersionAnswerSize = 12;
constexpr std::uint32_t kTrailerId = 0xFFFF;
constexpr std::size_t kTrailerSize = 12;
constexpr std::size_t kWordSize = 4;
constexpr unsigned kByteBits = 8;

std::string hex(std::uint32_t value) {
    std::array<char, 16> text{};
    const int length = std::snprintf(text.data(), text.size(), "0x%08X", value);
    return {text.data(), static_cast<std::size_t>(length)};
}

// Reads on. Whoever makes one has checked that the bytes are as many as will be read.
class Reader final {
public:
    explicit Reader(std::span<const std::uint8_t> source) : bytes(source) {}

    std::uint8_t Byte() {
        const std::uint8_t value = bytes.front();
        bytes = bytes.subspan(1);
        return value;
    }

    std::uint32_t Unsigned() {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < kWordSize; ++i) {
            value |= static_cast<std::uint32_t>(Byte()) << (kByteBits * i);
        }
        return value;
    }

    std::int32_t Signed() { return static_cast<std::int32_t>(Unsigned()); }
    float Real() { return std::bit_cast<float>(Unsigned()); }

private:
    std::span<const std::uint8_t> bytes;
};

// The server watches commands of its own prefix only; any other output of that type is unknown to
// it.
bool isWatchedCommand(const OutputRecord& output) {
    return output.type == ValueType::Command && output.name.starts_with("kyr/");
}

std::size_t elementsOf(const OutputRecord& output) {
    return output.elementCount > 0 ? static_cast<std::size_t>(output.elementCount) : 0;
}

// Length field of an entry. For a count below zero the server sends it as it comes out.
std::uint32_t valueLength(const OutputRecord& output) {
    switch (output.type) {
    case ValueType::IntArray:
    case ValueType::FloatArray:
        return static_cast<std::uint32_t>(output.elementCount) * std::uint32_t{kWordSize};
    case ValueType::Command:
        return 1;
    default:
        return kWordSize;
    }
}

// Size of a whole entry, of a command with its identifier given once.
std::size_t entrySize(const OutputRecord& output) {
    constexpr std::size_t kHead = 2 * kWordSize;
    switch (output.type) {
    case ValueType::Int:
    case ValueType::Float:
        return kHead + kWordSize;
    case ValueType::IntArray:
    case ValueType::FloatArray:
        return kHead + kWordSize * elementsOf(output);
    case ValueType::Command:
        return isWatchedCommand(output) ? kHead + 1 : kWordSize;
    }
    return kWordSize;
}

// An entry of a command cannot be told from one with its identifier twice by its own bytes when the
// identifier is 1; the size of the whole stream always tells.
bool hasCommandIdsTwice(std::size_t size, std::span<const OutputRecord> declared) {
    std::size_t expected = kTrailerSize;
    std::size_t commands = 0;
    for (const OutputRecord& output : declared) {
        expected += entrySize(output);
        commands += isWatchedCommand(output) ? 1U : 0U;
    }
    const std::size_t longer = expected + commands * kWordSize;
    if (size != expected && size != longer) {
        throw WireError("output stream of " + std::to_string(size) + " bytes, the " +
                        std::to_string(declared.size()) + " declared outputs take " +
                        std::to_string(expected) +
                        (commands == 0 ? "" : " or " + std::to_string(longer)));
    }
    return size != expected;
}

void expect(std::uint32_t actual, std::uint32_t expected, const std::string& what) {
    if (actual != expected) {
        throw WireError(what + " is " + hex(actual) + ", not " + hex(expected));
    }
}

bool readCommandState(Reader& reader, const std::string& entry) {
    const std::uint8_t state = reader.Byte();
    if (state > 1) {
        throw WireError("state in the " + entry + " is " + std::to_string(state) + ", not 0 or 1");
    }
    return state == 1;
}

template <typename Element>
std::vector<Element> readElements(Reader& reader, Element (Reader::*read)(), std::size_t count) {
    std::vector<Element> elements(count);
    for (Element& element : elements) {
        element = (reader.*read)();
    }
    return elements;
}

Value readValue(Reader& reader, const OutputRecord& output, const std::string& entry) {
    expect(reader.Unsigned(), valueLength(output), "length in the " + entry);
    switch (output.type) {
    case ValueType::Int:
        return reader.Signed();
    case ValueType::Float:
        return reader.Real();
    case ValueType::IntArray:
        return readElements(reader, &Reader::Signed, elementsOf(output));
    case ValueType::FloatArray:
        return readElements(reader, &Reader::Real, elementsOf(output));
    case ValueType::Command:
        return readCommandState(reader, entry);
    }
    return std::monostate{};
}

OutputValue readEntry(Reader& reader, const OutputRecord& output, bool commandIdsTwice) {
    const auto id = static_cast<std::uint32_t>(output.outputId);
    const std::string entry = "entry of output " + std::to_string(output.outputId);
    expect(reader.Unsigned(), id, "identifier in the " + entry);
    if (entrySize(output) == kWordSize) {
        return {id, std::monostate{}};
    }
    if (commandIdsTwice && isWatchedCommand(output)) {
        expect(reader.Unsigned(), id, "second identifier in the " + entry);
    }
    return {id, readValue(reader, output, entry)};
}

} // namespace

std::uint32_t DecodeFrameHeader(std::span<const std::uint8_t, kFrameHeaderSize> header) {
    const std::uint32_t length = Reader(header).Unsigned();
    if (length > kMaxPayloadSize) {
        throw WireError("answer announces " + std::to_string(length) + " bytes, at most " +
                        std::to_string(kMaxPayloadSize) + " can come");
    }
    return length;
}

Bytes DecodeFrame(std::span<const std::uint8_t> frame) {
    if (frame.size() < kFrameHeaderSize) {
        throw WireError("answer of " + std::to_string(frame.size()) +
                        " bytes is shorter than its header");
    }
    const std::uint32_t length = DecodeFrameHeader(frame.first<kFrameHeaderSize>());
    const auto payload = frame.subspan(kFrameHeaderSize);
    if (payload.size() != length) {
        throw WireError("answer announces " + std::to_string(length) + " bytes and has " +
                        std::to_string(payload.size()));
    }
    return {payload.begin(), payload.end()};
}

VersionAnswer DecodeVersion(std::span<const std::uint8_t> payload) {
    if (payload.size() != kVersionAnswerSize) {
        throw WireError("version answer of " + std::to_string(payload.size()) + " bytes, not " +
                        std::to_string(kVersionAnswerSize));
    }
    Reader reader(payload);
    expect(reader.Unsigned(), kVersionSpecifier, "specifier of the version answer");
    VersionAnswer answer;
    for (std::uint8_t& part : answer.version) {
        part = reader.Byte();
    }
    answer.number = reader.Unsigned();
    return answer;
}

OutputStream DecodeOutputs(std::span<const std::uint8_t> payload,
                           std::span<const OutputRecord> declared) {
    OutputStream stream;
    stream.commandIdsTwice = hasCommandIdsTwice(payload.size(), declared);
    Reader reader(payload);
    for (const OutputRecord& output : declared) {
        stream.outputs.push_back(readEntry(reader, output, stream.commandIdsTwice));
    }
    expect(reader.Unsigned(), kTrailerId, "identifier of the trailer");
    expect(reader.Unsigned(), kWordSize, "length of the trailer");
    stream.aircraftId = reader.Unsigned();
    return stream;
}

} // namespace demo
