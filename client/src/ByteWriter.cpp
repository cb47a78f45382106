#include "ByteWriter.h"

#include <bit>

namespace orvane::detail {

void ByteWriter::writeUInt8(std::uint8_t value) {
    written.push_back(value);
}

void ByteWriter::writeUInt32(std::uint32_t value) {
    for (unsigned int shift = 0; shift < 32; shift += 8) {
        written.push_back(static_cast<std::uint8_t>(value >> shift));
    }
}

void ByteWriter::writeInt32(std::int32_t value) {
    writeUInt32(static_cast<std::uint32_t>(value));
}

void ByteWriter::writeFloat(float value) {
    writeUInt32(std::bit_cast<std::uint32_t>(value));
}

void ByteWriter::writeText(std::string_view text) {
    written.insert(written.end(), text.begin(), text.end());
}

void ByteWriter::writeField(std::string_view text, std::size_t size) {
    writeText(text);
    writeZeros(size - text.size());
}

void ByteWriter::writeZeros(std::size_t count) {
    written.resize(written.size() + count);
}

} // namespace orvane::detail
