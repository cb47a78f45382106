#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace orvane::tool {

// How long a command goes on that has no end of its own, and at what pace.
struct Limits {
    std::optional<std::uint64_t> count;
    std::optional<double> seconds;
    double interval = 0.0;

    std::uint64_t MostTurns() const {
        return count.value_or(std::numeric_limits<std::uint64_t>::max());
    }
    double MostSeconds() const { return seconds.value_or(std::numeric_limits<double>::infinity()); }
};

// -n and -T. `counted` names what -n counts.
void declareEnds(CLI::App& command, Limits& limits, const std::string& counted);
// -n, -T and -i.
void declareLimits(CLI::App& command, Limits& limits, const std::string& counted);
// --rate. `paced` names what comes so often per second.
void declareRate(CLI::App& command, std::optional<double>& rate, const std::string& paced);

// Seconds as the steady clock counts them.
std::chrono::steady_clock::duration secondsOf(double seconds);

// The moment at which the limits end what begins now; far away without a limit.
std::chrono::steady_clock::time_point endOf(const Limits& limits);

} // namespace orvane::tool
