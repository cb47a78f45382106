#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Bytes.h"

namespace orvane::detail {

// Appends values to a request, little-endian and without padding.
class ByteWriter final {
public:
    void writeUInt8(std::uint8_t value);
    void writeUInt32(std::uint32_t value);
    void writeInt32(std::int32_t value);
    void writeFloat(float value);
    void writeText(std::string_view text);
    // Text, and zeros up to `size` bytes. The text must be shorter.
    void writeField(std::string_view text, std::size_t size);
    void writeZeros(std::size_t count);

    const Bytes& bytes() const { return written; }

private:
    Bytes written;
};

} // namespace orvane::detail
