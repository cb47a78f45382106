#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace CLI {
class App;
}

namespace orvane::tool {

// How long a command goes on that has no end of its own, and at what pace.
struct Limits {
    std::optional<std::uint64_t> count;
    std::optional<double> seconds;
    double interval = 0.0;
};

// -n, -T and -i. `counted` names what -n counts.
void declareLimits(CLI::App& command, Limits& limits, const char* counted);

// Seconds as the steady clock counts them.
std::chrono::steady_clock::duration secondsOf(double seconds);

// The moment at which the limits end what begins now; far away without a limit.
std::chrono::steady_clock::time_point endOf(const Limits& limits);

} // namespace orvane::tool
