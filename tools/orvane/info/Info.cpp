#include <chrono>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "orvane/tarnel/Client.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/latency/RoundTrips.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;

constexpr int kRoundTrips = 5;

constexpr Description kInfo{
    "info", "Show whether the plugin is reachable, its version and the aircraft",
    R"(The version is that of the Tarnel protocol. The id is a hash of the aircraft's
description, if an aircraft is loaded. Exit status 2: nothing listens there;
4: the simulator does not answer, for example while it loads scenery.

Examples:
  orvane info
  orvane info --host 192.0.2.7 --timeout 10
  orvane info --json | jq .aircraft_id)"};

struct NoOptions {};

struct ServerInfo {
    std::string host;
    tarnel::Version version;
    std::uint32_t aircraftId = 0;
    double roundTripMs = 0.0;
};

ServerInfo ask(const GlobalOptions& globals) {
    ServerInfo info;
    tarnel::Client client(globals.ForClient());
    info.host = client.host();
    info.version = client.version();
    info.aircraftId = client.define({}).aircraftId;
    std::vector<double> times;
    for (int i = 0; i < kRoundTrips; ++i) {
        const auto asked = steady_clock::now();
        client.version();
        times.push_back(Milliseconds(steady_clock::now() - asked).count());
    }
    info.roundTripMs = percentile(times, 50.0);
    return info;
}

Record recordOf(const GlobalOptions& globals, const ServerInfo& info) {
    const bool isLoaded = info.aircraftId != 0;
    return {{"host", info.host},
            {"port", globals.port},
            {"version", fmt::format("{}", fmt::join(info.version.parts, "."))},
            {"revision", info.version.revision},
            {"aircraft_loaded", isLoaded},
            {kAircraftId, aircraftRecord(info.aircraftId)},
            {"round_trip_ms", toThreeDecimals(info.roundTripMs)}};
}

std::vector<std::string> linesOf(const GlobalOptions& globals, const ServerInfo& info) {
    const std::string aircraft =
        info.aircraftId != 0 ? "loaded, id " + aircraftText(info.aircraftId) : "none loaded";
    return {fmt::format("{:<12}{}:{}", "server", info.host, globals.port),
            fmt::format("{:<12}{}, revision {}", "version", fmt::join(info.version.parts, "."),
                        info.version.revision),
            fmt::format("{:<12}{}", "aircraft", aircraft),
            fmt::format("{:<12}{:.1f} ms, the median of {}", "round trip", info.roundTripMs,
                        kRoundTrips)};
}

ExitCode info(const GlobalOptions& globals, const NoOptions& /*options*/) {
    const ServerInfo info = ask(globals);
    RecordWriter records(globals.OutputFormat(), {"host", "port", "version", "revision",
                                                  "aircraft_loaded", kAircraftId, "round_trip_ms"});
    if (records.IsWanted()) {
        records.Write(recordOf(globals, info));
        return ExitCode::Done;
    }
    for (const std::string& line : linesOf(globals, info)) {
        printLine(line);
    }
    return ExitCode::Done;
}

} // namespace

void addInfo(Subcommands& subcommands) {
    subcommands.Add<NoOptions>(kInfo, info);
}

} // namespace orvane::tool
