#include "support/Bytes.h"

#include <bit>
#include <cstdio>
#include <stdexcept>

Bytes u32(std::uint32_t value) {
    Bytes bytes;
    for (unsigned int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<unsigned char>(value >> shift));
    }
    return bytes;
}

Bytes i32(std::int32_t value) {
    return u32(static_cast<std::uint32_t>(value));
}

Bytes f32(float value) {
    return u32(std::bit_cast<std::uint32_t>(value));
}

Bytes name(std::string_view text, std::size_t size) {
    Bytes bytes(text.begin(), text.end());
    bytes.resize(size);
    return bytes;
}

Bytes zeros(std::size_t count) {
    return Bytes(count);
}

Bytes join(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

std::string toHex(const Bytes& bytes) {
    std::string text;
    for (const unsigned char byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof(digits), "%s%02X", text.empty() ? "" : " ", byte);
        text += digits;
    }
    return text;
}

Bytes fromHex(std::string_view text) {
    Bytes bytes;
    std::string digits;
    for (const char character : text) {
        if (character == ' ' || character == '\n') {
            continue;
        }
        digits += character;
        if (digits.size() == 2) {
            bytes.push_back(static_cast<unsigned char>(std::stoul(digits, nullptr, 16)));
            digits.clear();
        }
    }
    if (!digits.empty()) {
        throw std::invalid_argument("an odd number of hex digits");
    }
    return bytes;
}

void fill(IRingBuffer& buffer, const Bytes& bytes) {
    for (const unsigned char byte : bytes) {
        buffer.WriteUInt8(byte);
    }
}

Bytes drain(IRingBuffer& buffer) {
    Bytes bytes;
    while (buffer.GetNumReadBytesAvailable() > 0) {
        bytes.push_back(buffer.ReadUInt8());
    }
    return bytes;
}
