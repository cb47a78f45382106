#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::tool {

// The fields of a line of CSV, given without its line end. A quoted field may contain commas and
// doubled quotes. Empty if a quote is not closed, or if text follows a closing quote.
std::optional<std::vector<std::string>> csvFields(std::string_view line);

} // namespace orvane::tool
