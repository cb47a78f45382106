#include "tools/orvane/terminal/PrintableText.h"

#include <fmt/format.h>

namespace orvane::tool {

std::string printable(std::string_view text) {
    constexpr char kFirst = ' ';
    constexpr char kLast = '~';
    std::string result;
    for (const char character : text) {
        if (character == '\\') {
            result += "\\\\";
        } else if (character >= kFirst && character <= kLast) {
            result += character;
        } else {
            result += fmt::format("\\x{:02X}", static_cast<unsigned char>(character));
        }
    }
    return result;
}

} // namespace orvane::tool
