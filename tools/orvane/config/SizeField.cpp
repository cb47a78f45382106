#include "tools/orvane/config/SizeField.h"

#include <cstdint>
#include <limits>

namespace orvane::tool::config {

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

} // namespace

SizeField readSize(std::string_view text) {
    constexpr int kBase = 10;
    constexpr std::int64_t kBeyondInt = std::int64_t{1} << 40;
    std::size_t at = text.find_first_not_of(" \t\n\v\f\r");
    at = at == std::string_view::npos ? text.size() : at;
    const bool isNegative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        ++at;
    }
    if (at == text.size() || !isDigit(text[at])) {
        return {};
    }
    std::int64_t value = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) {
        value = value < kBeyondInt ? value * kBase + (text[at] - '0') : value;
    }
    value = isNegative ? -value : value;
    const std::string_view rest = text.substr(at);
    if (value > std::numeric_limits<int>::max() || value < std::numeric_limits<int>::min()) {
        return {SizeField::Kind::TooLarge, 0, rest};
    }
    return {SizeField::Kind::Number, static_cast<int>(value), rest};
}

} // namespace orvane::tool::config
