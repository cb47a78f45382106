#pragma once

#include <span>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"

namespace orvane::velmar {

// Finds what changed from one reading to the next.
class ChangeFilter final {
public:
    // A number has changed if it is more than `deadband` away from what was last reported, or if
    // one of the two is not a number; an array, if one of its elements has.
    explicit ChangeFilter(double deadband) : deadband(deadband) {}

    // The values are in the order of the names, which never change. The first time, all are new.
    Changes take(std::span<const std::string> names, std::vector<Value> values);

private:
    const double deadband;
    std::vector<Value> reported;
};

} // namespace orvane::velmar
