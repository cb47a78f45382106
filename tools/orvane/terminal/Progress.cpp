#include "tools/orvane/terminal/Progress.h"

#include <fmt/core.h>

namespace orvane::tool {

namespace {

constexpr double kKilo = 1000;

} // namespace

std::string rowsText(std::size_t rows) {
    return fmt::format("{} {}", rows, rows == 1 ? "row" : "rows");
}

std::string sizeText(std::size_t bytes) {
    const auto size = static_cast<double>(bytes);
    if (size < kKilo) {
        return fmt::format("{} bytes", bytes);
    }
    if (size < kKilo * kKilo) {
        return fmt::format("{:.1f} kB", size / kKilo);
    }
    return fmt::format("{:.1f} MB", size / kKilo / kKilo);
}

std::string progressText(double seconds, std::size_t rows, std::size_t bytes) {
    const double rate = seconds > 0 ? static_cast<double>(rows) / seconds : 0;
    return fmt::format("{:.1f} s, {}, {:.1f} rows/s, {}", seconds, rowsText(rows), rate,
                       sizeText(bytes));
}

} // namespace orvane::tool
