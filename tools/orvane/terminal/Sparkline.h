#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>

namespace orvane::tool {

// A character for each number, whose height shows where it lies between the least and the greatest.
// If all are the same they lie in the middle; a blank stands for a number that is not finite. Eight
// heights with Unicode, three without.
std::string sparkline(std::span<const double> numbers, bool unicode);
// The same for the last numbers, at most `most`.
std::string sparkline(const std::deque<double>& numbers, std::size_t most, bool unicode);

} // namespace orvane::tool
