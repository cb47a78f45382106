#pragma once

#include <type_traits>
#include <variant>

#include "orvane/velmar/Value.h"

namespace orvane::tool {

// Calls `take` with each number of a value, in its own type: one, or the elements of an array.
template <typename Take>
void forEachNumber(const velmar::Value& value, Take take) {
    std::visit(
        [&](const auto& each) {
            if constexpr (std::is_arithmetic_v<std::decay_t<decltype(each)>>) {
                take(each);
            } else {
                for (const auto element : each) {
                    take(element);
                }
            }
        },
        value);
}

} // namespace orvane::tool
