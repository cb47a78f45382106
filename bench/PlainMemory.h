#pragma once

#include <cstddef>
#include <cstring>
#include <vector>

#include "support/Bytes.h"

// Where a floor stores its bytes: as fast as bytes can be stored one value after the other.
class PlainMemory final {
public:
    explicit PlainMemory(std::size_t size) : bytes(size), position(bytes.data()) {}
    PlainMemory(const PlainMemory&) = delete;
    PlainMemory& operator=(const PlainMemory&) = delete;

    void Rewind() { position = bytes.data(); }

    // In the host's byte order: little-endian, as on the wire. Unchecked.
    template <typename Value>
    void Put(Value value) {
        std::memcpy(position, &value, sizeof(value));
        position += sizeof(value);
    }
    // To be filled by the caller.
    template <typename Value>
    Value* Take(std::size_t count) {
        auto* const taken = reinterpret_cast<Value*>(position);
        position += count * sizeof(Value);
        return taken;
    }

    // What was stored since Rewind.
    Bytes Content() const { return {bytes.data(), const_cast<const unsigned char*>(position)}; }

private:
    Bytes bytes;
    unsigned char* position;
};
