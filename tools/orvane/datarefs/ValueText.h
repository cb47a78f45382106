#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

#include "orvane/velmar/Value.h"

namespace orvane::tool {

// The shortest text that parses back to the same float.
std::string floatText(float number);

// "42", "0.5", or the elements of an array with commas between them.
std::string valueText(const velmar::Value& value);

// A number or an array of numbers. NaN and infinities are kept; JSON output writes them as null.
nlohmann::ordered_json valueJson(const velmar::Value& value);

// "int", "float[8]".
std::string typeText(velmar::Type type, std::uint32_t size);

// The reverse of `valueText`. Failure: not a value of this type, or not `size` elements.
velmar::Value parseValue(std::string_view text, velmar::Type type, std::uint32_t size);

} // namespace orvane::tool
