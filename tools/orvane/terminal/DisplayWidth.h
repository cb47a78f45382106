#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::tool {

// Columns of a terminal, which UTF-8 text does not take byte by byte: a letter may have several
// bytes, an accent no column of its own, and an ideograph two. The text is taken as UTF-8 whatever
// the locale; a byte that is not UTF-8 counts as one column.

std::size_t displayWidth(std::string_view text);

// As much of the beginning, or of the end, as fits into so many columns.
std::string_view beginningOf(std::string_view text, std::size_t columns);
std::string_view endOf(std::string_view text, std::size_t columns);
// The text, or ".." and its end where it is wider: names are told apart by their ends.
std::string lastColumns(std::string_view text, std::size_t columns);

// With blanks after, or before it, until it takes so many columns.
std::string leftAligned(std::string_view text, std::size_t columns);
std::string rightAligned(std::string_view text, std::size_t columns);

} // namespace orvane::tool
