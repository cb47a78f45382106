#pragma once

#include <string_view>

namespace orvane::tool::config {

// A number of elements as the plugin reads it: white space, a sign, and digits; what comes after
// them is not looked at.
struct SizeField {
    enum class Kind { Number, NoNumber, TooLarge };

    Kind kind = Kind::NoNumber;
    int value = 0;           // of a Number
    std::string_view rest{}; // after the digits
};

SizeField readSize(std::string_view text);

} // namespace orvane::tool::config
