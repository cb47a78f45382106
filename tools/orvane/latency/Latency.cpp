#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/latency/RoundTrips.h"
#include "tools/orvane/terminal/StatusLine.h"
#include "tools/orvane/terminal/Terminal.h"

#include <fmt/format.h>
#include <unistd.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "orvane/Errors.h"
#include "orvane/tarnel/Client.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;

constexpr double kUsualSeconds = 5.0;
constexpr double kShortestSeconds = 0.1;
constexpr double kLongestSeconds = 86'400.0;
constexpr std::size_t kLongestBar = 40;

constexpr const char* kLatencyFooter =
    "Asks for the version again and again, each time as soon as the answer is there. The server\n"
    "answers in the frame after the one in which it finds the request, so that a round trip takes\n"
    "two frames of the simulator, and the frame rate follows from the median time from one answer\n"
    "to the next. It is not given where the network, measured by the time to connect, is slower\n"
    "than a frame. Ctrl-C ends the measurement early.\n"
    "\n"
    "Examples:\n"
    "  orvane latency\n"
    "  orvane latency --seconds 30 --host 192.0.2.7\n"
    "  orvane latency --json | jq .framesPerSecond";

struct Measurement {
    double seconds = 0.0;
    Milliseconds connect{};
    std::vector<double> roundTripsMs;
    std::vector<double> exchangesMs; // from one answer to the next
    double framesPerSecond = 0.0;    // 0: unknown
};

Measurement measure(const GlobalOptions& globals, double seconds) {
    Measurement result;
    const auto connecting = steady_clock::now();
    tarnel::Client client(globals.ForClient());
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
                status.Show(fmt::format("{:.1f} of {:.1f} s, {} round trips",
                                        std::chrono::duration<double>(now - begin).count(), seconds,
                                        result.roundTripsMs.size()));
            }
        }
    } catch (const CancelledError&) {
        // What was measured so far is told.
    }
    result.seconds = std::chrono::duration<double>(answered - begin).count();
    if (result.roundTripsMs.empty()) {
        throw Failure(ExitCode::TimedOut, "nothing was measured in this time");
    }
    result.framesPerSecond =
        framesPerSecond(Milliseconds(percentile(result.exchangesMs, 50.0)), result.connect);
    return result;
}

// To microseconds; more digits would be noise.
double rounded(double number) {
    return std::round(number * 1000.0) / 1000.0;
}

Record recordOf(const Measurement& measured) {
    const std::vector<double>& times = measured.roundTripsMs;
    Record record{{"roundTrips", times.size()},
                  {"seconds", rounded(measured.seconds)},
                  {"connectMs", rounded(measured.connect.count())},
                  {"minMs", rounded(percentile(times, 0.0))},
                  {"p50Ms", rounded(percentile(times, 50.0))},
                  {"p90Ms", rounded(percentile(times, 90.0))},
                  {"p99Ms", rounded(percentile(times, 99.0))},
                  {"maxMs", rounded(percentile(times, 100.0))},
                  {"framesPerSecond", nullptr}};
    if (measured.framesPerSecond > 0.0) {
        record["framesPerSecond"] = rounded(measured.framesPerSecond);
    }
    Record buckets = Record::array();
    for (const Bucket& bucket : histogram(times)) {
        buckets.push_back({{"fromMs", rounded(bucket.from)},
                           {"toMs", std::isinf(bucket.to) ? Record() : Record(rounded(bucket.to))},
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

ExitCode latency(const GlobalOptions& globals, double seconds) {
    const Measurement measured = measure(globals, seconds);
    RecordWriter records(globals.OutputFormat(),
                         {"roundTrips", "seconds", "connectMs", "minMs", "p50Ms", "p90Ms", "p99Ms",
                          "maxMs", "framesPerSecond"});
    if (records.IsWanted()) {
        records.Write(recordOf(measured));
    } else {
        writeOut(textOf(measured));
    }
    return ExitCode::Done;
}

} // namespace

void addLatency(CLI::App& app, const GlobalOptions& globals, Work& work) {
    CLI::App* command =
        app.add_subcommand("latency", "Measures round trips and the simulator's frame rate");
    const auto seconds = std::make_shared<double>(kUsualSeconds);
    command->add_option("-T,--seconds", *seconds, "How long to measure")
        ->check(CLI::Range(kShortestSeconds, kLongestSeconds))
        ->capture_default_str();
    command->footer(kLatencyFooter);
    command->callback([&, seconds] { work = [&, seconds] { return latency(globals, *seconds); }; });
}

} // namespace orvane::tool
