#include <unistd.h>

#include <chrono>
#include <cmath>
#include <string>
#include <vector>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "orvane/Discovery.h"
#include "orvane/Errors.h"
#include "orvane/tarnel/Client.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/latency/RoundTrips.h"
#include "tools/orvane/terminal/StatusLine.h"
#include "tools/orvane/terminal/Terminal.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;

constexpr std::size_t kLongestBar = 40;

constexpr Description kLatency{
    "latency", "Measure round trips and the simulator's frame rate",
    R"(Asks for the version repeatedly, each time as soon as the answer is there. The
server answers in the frame after the one in which it finds the request, so a
round trip takes two frames of the simulator. The frame rate is computed from the
median time between answers. It is unknown if the network, measured by the time to
connect, is slower than a frame. Ctrl-C ends the measurement early.

Examples:
  orvane latency
  orvane latency --seconds 30 --host 192.0.2.7
  orvane latency --json | jq .frames_per_second)"};

struct LatencyOptions {
    double seconds = 5.0;
};

struct Measurement {
    double seconds = 0.0;
    Milliseconds connect{};
    std::vector<double> roundTripsMs;
    std::vector<double> exchangesMs; // from one answer to the next
    double framesPerSecond = 0.0;    // 0: unknown
};

Measurement measure(const GlobalOptions& globals, double seconds) {
    Measurement result;
    Options options = globals.ForClient();
    if (options.host == kAnyHost) {
        // Found here, so that the time to connect is that of the network.
        options.host = tarnel::Client(options).host();
    }
    const auto connecting = steady_clock::now();
    tarnel::Client client(options);
    result.connect = steady_clock::now() - connecting;
    // The first answer also waits for the server to accept the connection.
    client.version();
    const auto begin = steady_clock::now();
    const auto end = begin + secondsOf(seconds);
    auto answered = begin;
    StatusLine status;
    try {
        while (steady_clock::now() < end && !isInterrupted()) {
            const auto asked = steady_clock::now();
            client.version();
            const auto now = steady_clock::now();
            result.roundTripsMs.push_back(Milliseconds(now - asked).count());
            result.exchangesMs.push_back(Milliseconds(now - answered).count());
            answered = now;
            if (status.IsDue()) {
                status.Show(fmt::format("{:.1f} of {:.1f} s, {} round trips", secondsSince(begin),
                                        seconds, result.roundTripsMs.size()));
            }
        }
    } catch (const CancelledError&) {
        // Report what was measured so far.
    }
    result.seconds = std::chrono::duration<double>(answered - begin).count();
    if (result.roundTripsMs.empty()) {
        throw Failure(ExitCode::TimedOut, "nothing was measured in this time");
    }
    result.framesPerSecond =
        framesPerSecond(Milliseconds(percentile(result.exchangesMs, 50.0)), result.connect);
    return result;
}

Record recordOf(const Measurement& measured) {
    const std::vector<double>& times = measured.roundTripsMs;
    Record record{{"round_trips", times.size()},
                  {"seconds", toThreeDecimals(measured.seconds)},
                  {"connect_ms", toThreeDecimals(measured.connect.count())},
                  {"min_ms", toThreeDecimals(percentile(times, 0.0))},
                  {"p50_ms", toThreeDecimals(percentile(times, 50.0))},
                  {"p90_ms", toThreeDecimals(percentile(times, 90.0))},
                  {"p99_ms", toThreeDecimals(percentile(times, 99.0))},
                  {"max_ms", toThreeDecimals(percentile(times, 100.0))},
                  {"frames_per_second", nullptr}};
    if (measured.framesPerSecond > 0.0) {
        record["frames_per_second"] = toThreeDecimals(measured.framesPerSecond);
    }
    Record buckets = Record::array();
    for (const Bucket& bucket : histogram(times)) {
        buckets.push_back(
            {{"from_ms", toThreeDecimals(bucket.from)},
             {"to_ms", std::isinf(bucket.to) ? Record() : Record(toThreeDecimals(bucket.to))},
             {"count", bucket.count}});
    }
    record["histogram"] = std::move(buckets);
    return record;
}

std::string textOf(const Measurement& measured) {
    const std::vector<double>& times = measured.roundTripsMs;
    const Terminal terminal(STDOUT_FILENO);
    std::string text =
        fmt::format("{} round trips in {:.1f} s\n\n", times.size(), measured.seconds);
    for (const auto& [label, percent] :
         {std::pair("min", 0.0), std::pair("median", 50.0), std::pair("90 %", 90.0),
          std::pair("99 %", 99.0), std::pair("max", 100.0)}) {
        text += fmt::format("  {:<8} {:>9.3f} ms\n", label, percentile(times, percent));
    }
    text += "\n";
    for (const std::string& line :
         histogramLines(histogram(times), kLongestBar, terminal.KnowsUnicode())) {
        text += line + "\n";
    }
    text += fmt::format("\n  {:<12} {:.3f} ms to connect\n", "network", measured.connect.count());
    text +=
        measured.framesPerSecond > 0.0
            ? fmt::format("  {:<12} {:.1f} per second\n", "frame rate", measured.framesPerSecond)
            : fmt::format("  {:<12} unknown, the network is slower than a frame\n", "frame rate");
    return text;
}

ExitCode latency(const GlobalOptions& globals, const LatencyOptions& options) {
    const Measurement measured = measure(globals, options.seconds);
    RecordWriter records(globals.OutputFormat(),
                         {"round_trips", "seconds", "connect_ms", "min_ms", "p50_ms", "p90_ms",
                          "p99_ms", "max_ms", "frames_per_second"});
    if (records.IsWanted()) {
        records.Write(recordOf(measured));
    } else {
        writeOut(textOf(measured));
    }
    return ExitCode::Done;
}

} // namespace

void addLatency(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<LatencyOptions>(kLatency, latency);
    declareDuration(command, options.seconds, "How long to measure");
}

} // namespace orvane::tool
