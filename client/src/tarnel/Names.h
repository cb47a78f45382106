#pragma once

#include <cstdint>
#include <string>

namespace orvane::tarnel {

// Returns the name, or throws std::invalid_argument when its field in a record cannot hold it: it
// has room for 99 bytes and a zero byte.
std::string checkedName(std::string name);

// The same for an index of an array's element: std::invalid_argument when negative.
std::int32_t checkedElement(std::int32_t element, const std::string& name);

} // namespace orvane::tarnel
