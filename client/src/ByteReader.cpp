#include "ByteReader.h"

#include <bit>
#include <string>

#include "UnexpectedAnswer.h"

namespace orvane::detail {

std::uint8_t ByteReader::readUInt8() {
    return take(1).front();
}

std::uint32_t ByteReader::readUInt32() {
    std::uint32_t value = 0;
    unsigned int shift = 0;
    for (const std::uint8_t byte : take(sizeof value)) {
        value |= static_cast<std::uint32_t>(byte) << shift;
        shift += 8;
    }
    return value;
}

std::int32_t ByteReader::readInt32() {
    return static_cast<std::int32_t>(readUInt32());
}

float ByteReader::readFloat() {
    return std::bit_cast<float>(readUInt32());
}

void ByteReader::expectUInt32(std::uint32_t value, const char* what) {
    const std::size_t at = position;
    const std::uint32_t found = readUInt32();
    if (found != value) {
        throw UnexpectedAnswer(std::string(what) + " " + std::to_string(value) + " at byte " +
                                   std::to_string(at) + " of an answer of " +
                                   std::to_string(bytes.size()),
                               std::to_string(found));
    }
}

void ByteReader::expectEnd() const {
    if (left() != 0) {
        throw UnexpectedAnswer("an answer of " + std::to_string(position) + " bytes",
                               std::to_string(bytes.size()));
    }
}

std::span<const std::uint8_t> ByteReader::take(std::size_t count) {
    if (left() < count) {
        throw UnexpectedAnswer(
            "an answer of at least " + std::to_string(position + count) + " bytes",
            std::to_string(bytes.size()));
    }
    const auto taken = bytes.subspan(position, count);
    position += count;
    return taken;
}

} // namespace orvane::detail
