#include "steady/Growth.h"

#include <cmath>
#include <cstddef>

double exponentOf(const std::vector<int>& sizes, const std::vector<double>& works) {
    double n = 0;
    double sumX = 0;
    double sumY = 0;
    double sumXX = 0;
    double sumXY = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (works[i] == 0) {
            continue;
        }
        const double x = std::log(sizes[i]);
        const double y = std::log(works[i]);
        n += 1;
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
    }
    return n < 2 ? 0 : (n * sumXY - sumX * sumY) / (n * sumXX - sumX * sumX);
}
