#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace headless {

// A histogram of times, of constant size. A quantile is at most 1/64 too high; the worst and the
// mean are exact.
class TimeHistogram final {
public:
    using Time = std::chrono::nanoseconds;

    void Add(Time time);

    std::uint64_t Count() const { return count; }
    Time Worst() const { return worst; }
    // Zero if there are no times.
    Time Mean() const;
    // The time that this fraction of the times does not exceed: 0.5 is the median.
    Time Quantile(double part) const;

private:
    // Each power of two has this many steps of equal width.
    static constexpr std::uint64_t kSteps = 64;
    static constexpr std::size_t kBuckets = kSteps * 42;

    static std::size_t bucketOf(std::uint64_t nanoseconds);
    static std::uint64_t endOf(std::size_t bucket);

    std::array<std::uint64_t, kBuckets> buckets{};
    std::uint64_t count = 0;
    Time total{0};
    Time worst{0};
};

} // namespace headless
