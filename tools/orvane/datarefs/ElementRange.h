#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orvane/velmar/Value.h"

namespace orvane::tool {

// Some of an array's elements, as a user names them: NAME[3], or NAME[2:5] for 2, 3 and 4.
//
// The protocol transfers arrays from their first element on. The array is therefore registered up
// to the last element of the range, and the range takes its part.
struct ElementRange {
    std::uint32_t first = 0;
    std::uint32_t count = 1;
    bool isSingle = true; // NAME[3], not NAME[3:4]: a number instead of an array

    std::uint32_t End() const { return first + count; }
    velmar::Value Of(const velmar::Value& array) const;
    void Put(const velmar::Value& value, velmar::Value& array) const;
};

// Parses the text between the brackets. std::invalid_argument, with the reason.
ElementRange parseElementRange(std::string_view text, std::uint32_t mostElements);

} // namespace orvane::tool
