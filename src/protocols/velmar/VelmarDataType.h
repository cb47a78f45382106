#pragma once

#include <cstdint>

// How a dataref's value travels: its length in bytes as a uint32, then that many bytes. These are
// wire values; any other value is treated like None.
enum class VelmarDataType : std::uint32_t {
    None = 0,
    Int = 1,
    Float = 2,
    // The low byte of an int dataref.
    Byte = 3,
    // Arrays travel as raw 32-bit elements from element 0 on.
    IntArray = 4,
    FloatArray = 5,
};
