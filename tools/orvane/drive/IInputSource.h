#pragma once

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

// Where the values of a session come from.
class IInputSource {
public:
    virtual ~IInputSource() = default;

    // The next row, empty at the end. `seconds` is when the pace would send it.
    virtual std::optional<InputRow> Next(double seconds) = 0;
};

} // namespace orvane::tool
