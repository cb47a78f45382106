#pragma once

#include <span>
#include <string>

namespace orvane::detail {

// "a", "a and b", "a, b and c".
std::string listed(std::span<const std::string> names);

} // namespace orvane::detail
