#pragma once

#include <vector>

// The slope of the work over the size, both as logarithms, from least squares: 1 is linear. Sizes
// at which there was no work at all do not count; no work anywhere does not grow.
double exponentOf(const std::vector<int>& sizes, const std::vector<double>& works);
