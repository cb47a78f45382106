#pragma once

#include <chrono>
#include <cstddef>
#include <vector>

namespace demo {

// How long the answers took, one by one. The statistics of nothing are all 0.
class RoundTripTimes final {
public:
    using Microseconds = std::chrono::microseconds;

    void Add(Microseconds time) { times.push_back(time); }

    std::size_t Count() const { return times.size(); }
    Microseconds Last() const { return times.empty() ? Microseconds(0) : times.back(); }

    Microseconds Minimum() const { return percentile(0); }
    Microseconds Median() const { return percentile(50); }
    // As long as this or shorter were 95 of 100.
    Microseconds Percentile95() const { return percentile(95); }
    Microseconds Maximum() const { return percentile(100); }

private:
    Microseconds percentile(std::size_t percent) const;

    std::vector<Microseconds> times;
};

} // namespace demo
