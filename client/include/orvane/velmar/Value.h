#pragma once

#include <cstdint>
#include <variant>
#include <vector>

#include "orvane/Export.h"

namespace orvane::velmar {

// How a dataref is accessed: the client's choice, which the server does not check. A dataref that
// does not offer it reads as 0.
enum class Type : std::uint32_t { Int = 1, Float = 2, Byte = 3, IntArray = 4, FloatArray = 5 };

// Of a Type: the alternatives stand in its order.
using Value =
    std::variant<std::int32_t, float, std::uint8_t, std::vector<std::int32_t>, std::vector<float>>;

ORVANE_API Type typeOf(const Value& value);

} // namespace orvane::velmar
