#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvane::detail {

// Takes values from an answer, little-endian. Reading past its end throws UnexpectedAnswer.
class ByteReader final {
public:
    // The bytes must outlive the reader.
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes(bytes) {}

    std::uint8_t readUInt8();
    std::uint32_t readUInt32();
    std::int32_t readInt32();
    float readFloat();

    // Reads a uint32; throws UnexpectedAnswer unless it has this value.
    void expectUInt32(std::uint32_t value, const char* what);
    void expectEnd() const;
    std::size_t left() const { return bytes.size() - position; }

private:
    std::span<const std::uint8_t> take(std::size_t count);

    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
};

} // namespace orvane::detail
