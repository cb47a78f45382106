#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::tool {

// The fields of a line of CSV, without its end. A field in quotes may have commas, and quotes that
// are doubled. Empty when a quote is not closed, or text follows the one that closes.
std::optional<std::vector<std::string>> csvFields(std::string_view line);

} // namespace orvane::tool
