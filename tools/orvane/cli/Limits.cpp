#include "tools/orvane/cli/Limits.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

namespace orvane::tool {

namespace {

constexpr double kLongestLimitSeconds = 31'536'000.0;
constexpr double kLongestInterval = 86'400.0;
constexpr std::uint64_t kLargestCount = 1'000'000'000'000;

} // namespace

void declareLimits(CLI::App& command, Limits& limits, const char* counted) {
    command.add_option("-n,--count", limits.count, fmt::format("End after so many {}", counted))
        ->check(CLI::Range(std::uint64_t{1}, kLargestCount));
    command.add_option("-T,--seconds", limits.seconds, "End after so many seconds")
        ->check(CLI::Range(0.0, kLongestLimitSeconds));
    command
        .add_option("-i,--interval", limits.interval,
                    "Seconds from one question to the next; 0: as fast as answers come")
        ->check(CLI::Range(0.0, kLongestInterval))
        ->capture_default_str();
}

std::chrono::steady_clock::duration secondsOf(double seconds) {
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(seconds));
}

std::chrono::steady_clock::time_point endOf(const Limits& limits) {
    return std::chrono::steady_clock::now() +
           secondsOf(limits.seconds.value_or(kLongestLimitSeconds));
}

} // namespace orvane::tool
