#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "orvane/tarnel/Client.h"

namespace orvane::tool {

// What one exchange sends.
struct InputRow {
    // Since the session began; empty: at the next turn of the pace.
    std::optional<double> seconds;
    std::vector<tarnel::Item> items;
};

// Where the values of a session come from: returns the next row, empty at the end. `seconds` is
// when the pace would send it.
using InputSource = std::function<std::optional<InputRow>(double seconds)>;

} // namespace orvane::tool
