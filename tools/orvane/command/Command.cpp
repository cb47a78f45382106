#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/Bounds.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/Pace.h"
#include "tools/orvane/cli/ReconnectingClient.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/command/CommandEvents.h"
#include "tools/orvane/command/HeldCommands.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/terminal/StatusLine.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;
using Names = std::vector<std::string>;

constexpr double kDefaultInterval = 0.05;

constexpr Description kCommand{
    "command", "Run and observe commands",
    R"(If the simulator lacks one of the commands, none is run and the exit status is 3.

Examples:
  orvane command once sim/lights/landing_lights_toggle
  orvane command hold -T 2.5 sim/flight_controls/brakes_max
  orvane command observe sim/autopilot/servos_toggle sim/flight_controls/flaps_down)"};

constexpr Description kOnce{"once", "Run commands, one after the other",
                            R"(Examples:
  orvane command once sim/lights/landing_lights_toggle
  orvane command once sim/flight_controls/flaps_down sim/flight_controls/landing_gear_down)"};

constexpr Description kBegin{
    "begin", "Press commands and leave them down",
    R"(A command that was begun stays down until it is ended, even after orvane exits.

Examples:
  orvane command begin sim/flight_controls/brakes_max
  orvane command end sim/flight_controls/brakes_max)"};

constexpr Description kEnd{"end", "Release commands",
                           R"(Examples:
  orvane command end sim/flight_controls/brakes_max)"};

constexpr Description kHold{
    "hold", "Hold commands down for a time",
    R"(Holds the commands down together, for a time or until Ctrl-C, and always releases
them: if the connection is lost, on a new one.

Examples:
  orvane command hold -T 2.5 sim/flight_controls/brakes_max
  orvane command hold sim/flight_controls/pitch_trim_up)"};

constexpr Description kObserve{
    "observe", "Print when commands are pressed",
    R"(Prints a line for each press, whatever caused it: the seconds since the start, and
"down" and "up", or "pressed" if both fell between two polls. Several presses
between two polls count as one.

Examples:
  orvane command observe sim/autopilot/servos_toggle
  orvane command observe --json -n 1 sim/operation/pause_toggle | jq -r .command)"};

struct HoldOptions {
    Names names;
    std::optional<double> seconds;
};

struct ObserveOptions {
    Names names;
    Limits limits{.count = {}, .seconds = {}, .interval = kDefaultInterval};
};

void checkDistinct(const Names& names) {
    std::set<std::string> seen;
    for (const std::string& name : names) {
        if (name.empty()) {
            throw Failure(ExitCode::WrongUsage, "a command's name is empty");
        }
        if (!seen.insert(name).second) {
            throw Failure(ExitCode::WrongUsage, fmt::format("{}: named twice", name));
        }
    }
}

void recordActions(const GlobalOptions& globals, const Names& names, const char* action) {
    RecordWriter records(globals.OutputFormat(), {"command", "action"});
    for (const std::string& name : names) {
        records.Write({{"command", name}, {"action", action}});
    }
}

ExitCode act(const GlobalOptions& globals, const Names& names, velmar::Action action,
             const char* actionName) {
    checkDistinct(names);
    Options options = globals.ForClient();
    options.releaseHeld = false; // what is begun here stays down
    velmar::Client client(options);
    registerOrFail(client, names);
    for (const std::string& name : names) {
        client.run(name, action);
        if (action == velmar::Action::Begin) {
            tell(fmt::format("{} stays down until \"orvane command end {}\"", name, name));
        }
    }
    recordActions(globals, names, actionName);
    return ExitCode::Done;
}

std::string holdingText(const HoldOptions& options) {
    const std::string text = fmt::format("holding {}", fmt::join(options.names, ", "));
    return options.seconds ? fmt::format("{} for {} s; Ctrl-C releases", text, *options.seconds)
                           : text + " until Ctrl-C";
}

ExitCode hold(const GlobalOptions& globals, const HoldOptions& options) {
    const Names& names = options.names;
    checkDistinct(names);
    StatusLine status;
    status.Show(holdingText(options));
    holdCommands(globals, names,
                 steady_clock::now() + secondsOf(options.seconds.value_or(kSecondsPerDay)));
    status.Clear();
    recordActions(globals, names, "hold");
    return ExitCode::Done;
}

void show(const CommandEvent& event, double seconds, RecordWriter& records) {
    if (records.IsWanted()) {
        records.Write({{"time", toThreeDecimals(seconds)},
                       {"command", event.command},
                       {"event", nameOf(event.kind)}});
    } else {
        printLine(fmt::format("{:.3f} {} {}", seconds, event.command, nameOf(event.kind)));
    }
}

ExitCode observe(const GlobalOptions& globals, const ObserveOptions& options) {
    const Limits& limits = options.limits;
    checkDistinct(options.names);
    Pace pace(limits.interval);
    ReconnectingClient reconnecting(globals, endOf(limits), [](const std::string& line) {
        tell(line.empty() ? "the simulator is back" : line);
    });
    registerOrFail(reconnecting.Client(), options.names);
    RecordWriter records(globals.OutputFormat(), {"time", "command", "event"});
    CommandEvents events;
    std::uint64_t presses = 0;
    while (!reconnecting.IsOver() && presses < limits.MaxCount()) {
        std::vector<velmar::CommandReport> reports;
        reconnecting.Try([&] { reports = reconnecting.Client().pollPresses(); });
        for (const CommandEvent& event : events.Take(reports)) {
            show(event, pace.Elapsed(), records);
            presses += event.kind == CommandEvent::Kind::Down ? 0 : 1;
        }
        pace.WaitForNext(limits.MaxSeconds());
    }
    return ExitCode::Done;
}

void declareNames(CLI::App& command, Names& names) {
    declareWords(command, names, {"NAME", "Names of commands", "SIMCOMMAND"});
}

void addAction(Subcommands& commands, const Description& description, velmar::Action action) {
    const auto [command, names] =
        commands.Add<Names>(description, [=](const GlobalOptions& globals, const Names& chosen) {
            return act(globals, chosen, action, description.name);
        });
    declareNames(command, names);
}

void addHold(Subcommands& commands) {
    const auto [command, options] = commands.Add<HoldOptions>(kHold, hold);
    declareNames(command, options.names);
    declareDuration(command, options.seconds, "How long to hold; without it until Ctrl-C");
}

void addObserve(Subcommands& commands) {
    const auto [command, options] = commands.Add<ObserveOptions>(kObserve, observe);
    declareNames(command, options.names);
    declareLimits(command, options.limits, "presses");
}

} // namespace

void addCommand(Subcommands& subcommands) {
    Subcommands commands = subcommands.AddGroup(kCommand);
    addAction(commands, kOnce, velmar::Action::Once);
    addAction(commands, kBegin, velmar::Action::Begin);
    addAction(commands, kEnd, velmar::Action::End);
    addHold(commands);
    addObserve(commands);
}

} // namespace orvane::tool
