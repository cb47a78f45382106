#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>

namespace orvane::tool {

// A character for each number, as high as the number lies between the least and the greatest of
// them; in the middle where all are the same, and a blank for what is no number. Eight heights with
// Unicode, three without.
std::string sparkline(std::span<const double> numbers, bool unicode);
// Of the last ones, at most so many.
std::string sparkline(const std::deque<double>& numbers, std::size_t most, bool unicode);

} // namespace orvane::tool
