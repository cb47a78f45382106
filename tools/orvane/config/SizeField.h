#pragma once

#include <string_view>

namespace orvane::tool::config {

// A number of elements as the plugin reads it: white space, a sign and digits; the rest is ignored.
struct SizeField {
    enum class Kind { Number, NotANumber, TooLarge };

    Kind kind = Kind::NotANumber;
    int value = 0;           // of a Number
    std::string_view rest{}; // after the digits
};

SizeField readSize(std::string_view text);

} // namespace orvane::tool::config
