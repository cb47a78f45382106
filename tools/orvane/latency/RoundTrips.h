#pragma once

#include <chrono>
#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace orvane::tool {

using Milliseconds = std::chrono::duration<double, std::milli>;

// The value that `percent` of the values do not exceed: one of them, the nearest above. There must
// be one.
double percentile(std::span<const double> values, double percent);

struct Bucket {
    double from = 0.0;
    double to = 0.0; // infinite in the last one if something lies beyond the others
    std::size_t count = 0;
};

// Ten to twenty-one buckets of a round width from the least value to the 99th percentile, and one
// for what lies beyond. There must be a value.
std::vector<Bucket> histogram(std::span<const double> values);

// A line for each bucket, with a bar of at most `columns` characters. The values are milliseconds.
std::vector<std::string> histogramLines(std::span<const Bucket> buckets, std::size_t columns,
                                        bool unicode);

// Frames per second of a server that is asked again as soon as it has answered: it answers in the
// frame after the one that saw the request, so that an exchange takes two. 0 where the network, of
// which `network` is a round trip, may have cost a frame more.
double framesPerSecond(Milliseconds exchange, Milliseconds network);

} // namespace orvane::tool
