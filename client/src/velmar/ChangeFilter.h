#pragma once

#include <span>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"

namespace orvane::velmar {

// Tells what changed from reading to reading.
class ChangeFilter final {
public:
    // A number has changed when it is more than `deadband` away from what was last reported, or
    // when one of the two is not a number; an array, when one of its elements has.
    explicit ChangeFilter(double deadband) : deadband(deadband) {}

    // Values in the order of the names, always of the same names. The first time, all are new.
    Changes take(std::span<const std::string> names, std::vector<Value> values);

private:
    const double deadband;
    std::vector<Value> reported;
};

} // namespace orvane::velmar
