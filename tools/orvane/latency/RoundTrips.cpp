#include "tools/orvane/latency/RoundTrips.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <fmt/core.h>

#include "tools/orvane/terminal/Bar.h"

namespace orvane::tool {

namespace {

constexpr double kFramesPerExchange = 2.0;
constexpr double kBuckets = 10.0;
constexpr double kNarrowestBucket = 0.001;

// The next of 1, 2, 5, 10, 20, ... times a power of ten.
double roundWidth(double width) {
    const double unit = std::pow(10.0, std::floor(std::log10(width)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (step * unit >= width * (1.0 - 1e-9)) {
            return step * unit;
        }
    }
    return 10.0 * unit;
}

} // namespace

double percentile(std::span<const double> values, double percent) {
    std::vector<double> sorted(values.begin(), values.end());
    std::sort(sorted.begin(), sorted.end());
    const double rank = std::ceil(percent / 100.0 * static_cast<double>(sorted.size()));
    return sorted[static_cast<std::size_t>(std::max(rank, 1.0)) - 1];
}

std::vector<Bucket> histogram(std::span<const double> values) {
    const double least = *std::min_element(values.begin(), values.end());
    const double most = percentile(values, 99.0);
    const double width = roundWidth(std::max((most - least) / kBuckets, kNarrowestBucket));
    const double first = std::floor(least / width);
    const auto size = static_cast<std::size_t>(std::floor(most / width) - first) + 1;
    std::vector<Bucket> buckets;
    for (std::size_t i = 0; i < size; ++i) {
        const double from = first + static_cast<double>(i);
        buckets.push_back({from * width, (from + 1.0) * width, 0});
    }
    Bucket beyond{buckets.back().to, std::numeric_limits<double>::infinity(), 0};
    for (const double value : values) {
        const auto place =
            static_cast<std::size_t>(std::max(std::floor(value / width) - first, 0.0));
        ++(place < size ? buckets[place] : beyond).count;
    }
    if (beyond.count > 0) {
        buckets.push_back(beyond);
    }
    return buckets;
}

std::vector<std::string> histogramLines(std::span<const Bucket> buckets, std::size_t columns,
                                        bool unicode) {
    std::size_t most = 1;
    for (const Bucket& bucket : buckets) {
        most = std::max(most, bucket.count);
    }
    const double width = buckets.empty() ? 1.0 : buckets[0].to - buckets[0].from;
    const int digits = std::clamp(static_cast<int>(-std::floor(std::log10(width) + 1e-9)), 0, 3);
    std::vector<std::string> lines;
    for (const Bucket& bucket : buckets) {
        // Even one value must show.
        const std::size_t length = (bucket.count * columns + most - 1) / most;
        const std::string to =
            std::isinf(bucket.to) ? "beyond" : fmt::format("{:.{}f} ms", bucket.to, digits);
        lines.push_back(fmt::format("{:>9.{}f} - {:<12} {:>7}  {}", bucket.from, digits, to,
                                    bucket.count, bar(static_cast<double>(length), unicode)));
    }
    return lines;
}

double framesPerSecond(Milliseconds exchange, Milliseconds network) {
    const Milliseconds frame = exchange / kFramesPerExchange;
    return network < frame ? 1000.0 / frame.count() : 0.0;
}

} // namespace orvane::tool
