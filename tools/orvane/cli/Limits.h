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

// When an endless command stops, and its pace.
struct Limits {
    std::optional<std::uint64_t> count;
    std::optional<double> seconds;
    double interval = 0.0;

    std::uint64_t MaxCount() const {
        return count.value_or(std::numeric_limits<std::uint64_t>::max());
    }
    double MaxSeconds() const { return seconds.value_or(std::numeric_limits<double>::infinity()); }
};

// -T, at most a day: with its default, or for what otherwise ends with Ctrl-C.
void declareDuration(CLI::App& command, double& seconds, const std::string& description);
void declareDuration(CLI::App& command, std::optional<double>& seconds,
                     const std::string& description);

// -n and -T. `counted` names what -n counts.
void declareEnds(CLI::App& command, Limits& limits, const std::string& counted);
// -n, -T and -i.
void declareLimits(CLI::App& command, Limits& limits, const std::string& counted);
// --rate. `description` says what happens this many times per second.
void declareRate(CLI::App& command, std::optional<double>& rate, const std::string& description);

// Seconds as the steady clock counts them.
std::chrono::steady_clock::duration secondsOf(double seconds);
double secondsSince(std::chrono::steady_clock::time_point begin);

// When something that begins now reaches its limit; a year from now without one.
std::chrono::steady_clock::time_point endOf(const Limits& limits);

} // namespace orvane::tool
