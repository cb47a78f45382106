#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace orvane::tool {

using Milliseconds = std::chrono::duration<double, std::milli>;

// The smallest of the values that at least `percent` of them do not exceed. There must be a value.
double percentile(std::span<const double> values, double percent);

struct Bucket {
    double from = 0.0;
    double to = 0.0; // infinite in the last bucket if values lie beyond the others
    std::size_t count = 0;
};

// Ten to twenty-one buckets of a round width from the least value to the 99th percentile, and one
// for values beyond it. There must be a value.
std::vector<Bucket> histogram(std::span<const double> values);

// A line for each bucket, with a bar of at most `columns` characters. The values are milliseconds.
std::vector<std::string> histogramLines(std::span<const Bucket> buckets, std::size_t columns,
                                        bool unicode);

// The frame rate of a server that gets each request right after its last answer: it answers in the
// frame after the one that saw the request, so an exchange takes two. 0 if the network, with a
// round trip of `network`, may have cost another frame.
double framesPerSecond(Milliseconds exchange, Milliseconds network);

} // namespace orvane::tool
