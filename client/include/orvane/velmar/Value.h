#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "orvane/Export.h"

namespace orvane::velmar {

// How a dataref is accessed. The client chooses and the server does not check: a dataref without
// this type reads as 0.
enum class Type : std::uint32_t { Int = 1, Float = 2, Byte = 3, IntArray = 4, FloatArray = 5 };

// The alternatives are in the order of Type.
using Value =
    std::variant<std::int32_t, float, std::uint8_t, std::vector<std::int32_t>, std::vector<float>>;

ORVANE_API Type typeOf(const Value& value);

} // namespace orvane::velmar
