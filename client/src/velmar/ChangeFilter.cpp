#include "velmar/ChangeFilter.h"

#include <cmath>
#include <cstddef>
#include <type_traits>
#include <utility>
#include <variant>

namespace orvane::velmar {

namespace {

bool hasMoved(double from, double to, double deadband) {
    if (std::isnan(from) || std::isnan(to)) {
        return std::isnan(from) != std::isnan(to);
    }
    return from != to && std::abs(to - from) > deadband;
}

template <typename T>
bool hasMoved(const T& from, const T& to, double deadband) {
    if constexpr (std::is_arithmetic_v<T>) {
        return hasMoved(static_cast<double>(from), static_cast<double>(to), deadband);
    } else {
        for (std::size_t element = 0; element < to.size(); ++element) {
            if (hasMoved(from[element], to[element], deadband)) {
                return true;
            }
        }
        return false;
    }
}

bool hasChanged(const Value& from, const Value& to, double deadband) {
    return std::visit(
        [&]<typename T>(const T& value) { return hasMoved(std::get<T>(from), value, deadband); },
        to);
}

} // namespace

Changes ChangeFilter::take(std::span<const std::string> names, std::vector<Value> values) {
    const bool isFirst = reported.empty();
    reported.resize(values.size());
    Changes changes;
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (isFirst || hasChanged(reported[i], values[i], deadband)) {
            changes.emplace_back(names[i], values[i]);
            reported[i] = std::move(values[i]);
        }
    }
    return changes;
}

} // namespace orvane::velmar
