#include "tools/orvane/terminal/Bar.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace orvane::tool {

namespace {

constexpr std::array<const char*, 8> kEighths{"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};

} // namespace

std::string bar(double columns, bool unicode) {
    if (!unicode) {
        return std::string(static_cast<std::size_t>(std::lround(columns)), '#');
    }
    const auto eighths = static_cast<std::size_t>(std::lround(columns * kEighths.size()));
    std::string text;
    for (std::size_t i = 0; i < eighths / kEighths.size(); ++i) {
        text += "█";
    }
    return text + kEighths[eighths % kEighths.size()];
}

} // namespace orvane::tool
