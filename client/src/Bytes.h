#pragma once

#include <cstdint>
#include <vector>

namespace orvane::detail {

using Bytes = std::vector<std::uint8_t>;

} // namespace orvane::detail
