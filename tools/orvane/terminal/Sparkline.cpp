#include "tools/orvane/terminal/Sparkline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace orvane::tool {

namespace {

constexpr std::array<const char*, 8> kBlocks{"▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr std::array<const char*, 3> kSigns{"_", "-", "^"};

std::string drawn(std::span<const double> numbers, std::span<const char* const> heights) {
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    for (const double number : numbers) {
        if (std::isfinite(number)) {
            least = std::min(least, number);
            greatest = std::max(greatest, number);
        }
    }
    // Halved first: the range of two large numbers may be too large for a double.
    const double range = greatest / 2 - least / 2;
    std::string line;
    const auto top = static_cast<double>(heights.size() - 1);
    for (const double number : numbers) {
        if (!std::isfinite(number)) {
            line += " ";
            continue;
        }
        const double part = range > 0 ? (number / 2 - least / 2) / range : 0.5;
        line += heights[static_cast<std::size_t>(std::floor(part * top + 0.5))];
    }
    return line;
}

} // namespace

std::string sparkline(std::span<const double> numbers, bool unicode) {
    return unicode ? drawn(numbers, kBlocks) : drawn(numbers, kSigns);
}

std::string sparkline(const std::deque<double>& numbers, std::size_t most, bool unicode) {
    const auto count = static_cast<std::ptrdiff_t>(std::min(most, numbers.size()));
    const std::vector<double> last(numbers.end() - count, numbers.end());
    return sparkline(last, unicode);
}

} // namespace orvane::tool
