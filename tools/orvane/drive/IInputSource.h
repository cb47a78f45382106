#pragma once

#include <optional>
#include <vector>

#include "orvane/tarnel/Client.h"

namespace orvane::tool {

// What one exchange sends.
struct InputRow {
    // Since the session began; empty: when the pace says so.
    std::optional<double> seconds;
    std::vector<tarnel::Item> items;
};

// Where the values of a session come from.
class IInputSource {
public:
    virtual ~IInputSource() = default;

    // The next row. `seconds` is when the pace would send it. Empty at the end.
    virtual std::optional<InputRow> Next(double seconds) = 0;
};

} // namespace orvane::tool
