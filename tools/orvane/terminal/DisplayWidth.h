#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::tool {

// The columns that a UTF-8 text takes on a terminal: a letter may have several bytes, an accent
// takes no column and an ideograph two. The locale does not matter; a byte that is not UTF-8 counts
// as one column.

std::size_t displayWidth(std::string_view text);

// As much of the beginning, or of the end, as fits into this many columns.
std::string_view beginningOf(std::string_view text, std::size_t columns);
std::string_view endOf(std::string_view text, std::size_t columns);
// The text, or ".." and its end if it is wider: names differ at their ends.
std::string lastColumns(std::string_view text, std::size_t columns);

// The text, followed by spaces up to this many columns.
std::string leftAligned(std::string_view text, std::size_t columns);

} // namespace orvane::tool
