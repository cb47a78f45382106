#pragma once

#include <vector>

// The slope of the work over the size, both as logarithms, by least squares: 1 is linear. Sizes
// without work do not count; without any work the result is 0.
double exponentOf(const std::vector<int>& sizes, const std::vector<double>& works);
