#pragma once

#include "tools/orvane/dump/TcpSegment.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace orvane::tool::dump {

// Reads little-endian values one after the other. Behind the last byte everything reads as zero and
// `IsShort` becomes true: whoever must know the difference asks `Left` first.
class WireReader final {
public:
    explicit WireReader(ByteView source) : bytes(source) {}

    std::size_t Left() const { return bytes.size() - at; }
    std::size_t Position() const { return at; }
    bool IsShort() const { return wasShort; }

    std::uint8_t Byte() {
        if (at == bytes.size()) {
            wasShort = true;
            return 0;
        }
        return bytes[at++];
    }

    std::uint32_t Unsigned() {
        std::uint32_t value = 0;
        for (unsigned shift = 0; shift < 32; shift += 8) {
            value |= std::uint32_t{Byte()} << shift;
        }
        return value;
    }

    std::int32_t Signed() { return static_cast<std::int32_t>(Unsigned()); }
    float Real() { return std::bit_cast<float>(Unsigned()); }

    // As many as there are, at most `count`.
    ByteView Take(std::size_t count) {
        const ByteView taken = bytes.subspan(at, std::min(count, Left()));
        wasShort = wasShort || taken.size() < count;
        at += taken.size();
        return taken;
    }

    std::string Text(std::size_t count) {
        const ByteView taken = Take(count);
        return {taken.begin(), taken.end()};
    }

    ByteView Rest() const { return bytes.subspan(at); }

private:
    ByteView bytes;
    std::size_t at = 0;
    bool wasShort = false;
};

} // namespace orvane::tool::dump
