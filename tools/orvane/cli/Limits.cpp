#include "tools/orvane/cli/Limits.h"

#include <CLI/App.hpp>
#include <fmt/core.h>

#include "tools/orvane/cli/Bounds.h"

namespace orvane::tool {

namespace {

constexpr std::int64_t kLargestCount = 1'000'000'000'000;
constexpr const char* kSecondsOption = "-T,--seconds";
constexpr double kShortestDuration = 0.1;
constexpr double kSlowestRate = 0.001;
constexpr double kFastestRate = 1000;

} // namespace

void declareDuration(CLI::App& command, double& seconds, const std::string& description) {
    command.add_option(kSecondsOption, seconds, description)
        ->check(between(kShortestDuration, kSecondsPerDay, "0.1 and a day"))
        ->type_name("SECONDS")
        ->capture_default_str();
}

void declareDuration(CLI::App& command, std::optional<double>& seconds,
                     const std::string& description) {
    command.add_option(kSecondsOption, seconds, description)
        ->check(between(0.0, kSecondsPerDay, "0 and a day"))
        ->type_name("SECONDS");
}

void declareEnds(CLI::App& command, Limits& limits, const std::string& counted) {
    command.add_option("-n,--count", limits.count, fmt::format("Stop after this many {}", counted))
        ->check(wholeBetween(1, kLargestCount, "1 and a trillion"))
        ->type_name("COUNT");
    command.add_option(kSecondsOption, limits.seconds, "Stop after this many seconds")
        ->check(between(0.0, kSecondsPerYear, "0 and a year"))
        ->type_name("SECONDS");
}

void declareLimits(CLI::App& command, Limits& limits, const std::string& counted) {
    declareEnds(command, limits, counted);
    command
        .add_option("-i,--interval", limits.interval,
                    "Seconds between requests; 0 sends each as soon as the last is answered")
        ->check(between(0.0, kSecondsPerDay, "0 and a day"))
        ->type_name("SECONDS")
        ->capture_default_str();
}

void declareRate(CLI::App& command, std::optional<double>& rate, const std::string& description) {
    command.add_option("--rate", rate, description)
        ->check(between(kSlowestRate, kFastestRate))
        ->type_name("RATE");
}

std::chrono::steady_clock::duration secondsOf(double seconds) {
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(seconds));
}

double secondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

std::chrono::steady_clock::time_point endOf(const Limits& limits) {
    return std::chrono::steady_clock::now() + secondsOf(limits.seconds.value_or(kSecondsPerYear));
}

} // namespace orvane::tool
