#include "headless/metering/TimeHistogram.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace headless {

void TimeHistogram::Add(Time time) {
    const Time counted = std::max(time, Time(0));
    ++buckets[bucketOf(static_cast<std::uint64_t>(counted.count()))];
    ++count;
    total += counted;
    worst = std::max(worst, counted);
}

TimeHistogram::Time TimeHistogram::Mean() const {
    return count == 0 ? Time(0) : total / static_cast<Time::rep>(count);
}

TimeHistogram::Time TimeHistogram::Quantile(double part) const {
    const double wanted = std::ceil(part * static_cast<double>(count));
    std::uint64_t seen = 0;
    // The last bucket has no upper end.
    for (std::size_t bucket = 0; bucket + 1 < kBuckets; ++bucket) {
        seen += buckets[bucket];
        if (seen > 0 && static_cast<double>(seen) >= wanted) {
            return std::min(worst, Time(static_cast<Time::rep>(endOf(bucket))));
        }
    }
    return worst;
}

std::size_t TimeHistogram::bucketOf(std::uint64_t nanoseconds) {
    if (nanoseconds < kSteps) {
        return nanoseconds;
    }
    const auto shift = static_cast<std::uint64_t>(std::bit_width(nanoseconds / kSteps) - 1);
    return std::min<std::uint64_t>(kBuckets - 1, shift * kSteps + (nanoseconds >> shift));
}

// The longest time in the bucket.
std::uint64_t TimeHistogram::endOf(std::size_t bucket) {
    if (bucket < kSteps) {
        return bucket;
    }
    const std::uint64_t shift = bucket / kSteps - 1;
    return ((bucket - shift * kSteps + 1) << shift) - 1;
}

} // namespace headless
