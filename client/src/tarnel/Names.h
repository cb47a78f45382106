#pragma once

#include <cstdint>
#include <string>

namespace orvane::tarnel {

// Returns the name, or throws std::invalid_argument if a record's field cannot hold it: 99 bytes
// and a zero byte.
std::string checkedName(std::string name);

// The same for the index of an array's element, which must not be negative.
std::int32_t checkedElement(std::int32_t element, const std::string& name);

} // namespace orvane::tarnel
