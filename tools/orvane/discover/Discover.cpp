#include <chrono>
#include <string>
#include <vector>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "orvane/Discovery.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"

namespace orvane::tool {

namespace {

constexpr Description kDiscover{
    "discover", "List the simulators that are heard on the network",
    R"(A simulator sends a beacon once a second, as UDP multicast to 239.255.1.1, port
49707. The list has its address, the name of its computer, its version (121400 is
12.1.4), its role, and whether the plugin answers there. Anybody on the network
can send a beacon. Exit status 2: none was heard.

The other commands take the first of them with --host auto.

Examples:
  orvane discover
  orvane discover -T 10 --json
  orvane info --host auto)"};

struct DiscoverOptions {
    double seconds = std::chrono::duration<double>(kListenTime).count();
};

const char* textOf(SimulatorRole role) {
    switch (role) {
    case SimulatorRole::Master:
        return "master";
    case SimulatorRole::ExternalVisual:
        return "external_visual";
    case SimulatorRole::InstructorStation:
        return "instructor_station";
    case SimulatorRole::Unknown:
        break;
    }
    return "unknown";
}

Record recordOf(const HeardSimulator& simulator) {
    return {{"address", simulator.address},
            {"computer", simulator.computer},
            {"version", simulator.version},
            {"role", textOf(simulator.role)},
            {"plugin", simulator.hasServer}};
}

std::string lineOf(const HeardSimulator& simulator, const GlobalOptions& globals) {
    return fmt::format("{:<15}  {}  {}  version {}  port {} {}", simulator.address,
                       simulator.computer, textOf(simulator.role), simulator.version, globals.port,
                       simulator.hasServer ? "answers" : "does not answer");
}

ExitCode discoverSimulators(const GlobalOptions& globals, const DiscoverOptions& options) {
    const auto listenTime =
        std::chrono::duration_cast<std::chrono::milliseconds>(secondsOf(options.seconds));
    const std::vector<HeardSimulator> heard = discover(globals.ForClient(), listenTime);
    RecordWriter records(globals.OutputFormat(),
                         {"address", "computer", "version", "role", "plugin"});
    for (const HeardSimulator& simulator : heard) {
        if (records.IsWanted()) {
            records.Write(recordOf(simulator));
        } else {
            printLine(lineOf(simulator, globals));
        }
    }
    if (heard.empty()) {
        throw Failure(ExitCode::CannotConnect,
                      fmt::format("no simulator was heard within {} s", options.seconds));
    }
    return ExitCode::Done;
}

} // namespace

void addDiscover(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<DiscoverOptions>(kDiscover, discoverSimulators);
    declareDuration(command, options.seconds, "How long to listen");
}

} // namespace orvane::tool
