#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "network/IRingBuffer.h"

// Bytes on the wire. Tests write expected bytes literally; the functions below are for long records
// in which only a few fields matter.
using Bytes = std::vector<unsigned char>;

// Little-endian, as everything on the wire.
Bytes u32(std::uint32_t value);
Bytes i32(std::int32_t value);
Bytes f32(float value);
// `text`, padded with zeros to `size` bytes.
Bytes name(std::string_view text, std::size_t size = 100);
Bytes zeros(std::size_t count);
Bytes join(std::initializer_list<Bytes> parts);

// "B1 6B 00 B5" and back.
std::string toHex(const Bytes& bytes);
Bytes fromHex(std::string_view text);

// Put the bytes into the buffer, and take all that it holds.
void fill(IRingBuffer& buffer, const Bytes& bytes);
Bytes drain(IRingBuffer& buffer);
