#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/LastingClient.h"
#include "tools/orvane/cli/Limits.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/command/CommandEvents.h"
#include "tools/orvane/command/HeldCommands.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/terminal/StatusLine.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <CLI/CLI.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;
using Names = std::vector<std::string>;

constexpr double kUsualInterval = 0.05;
constexpr double kLongestHold = 86'400.0;

constexpr const char* kCommandFooter =
    "Where the simulator lacks one of the commands, none is run, and the exit status is 3.\n"
    "\n"
    "Examples:\n"
    "  orvane command once sim/lights/landing_lights_toggle\n"
    "  orvane command hold -T 2.5 sim/flight_controls/brakes_max\n"
    "  orvane command observe sim/autopilot/servos_toggle sim/flight_controls/flaps_down";

constexpr const char* kOnceFooter =
    "Examples:\n"
    "  orvane command once sim/lights/landing_lights_toggle\n"
    "  orvane command once sim/flight_controls/flaps_down sim/flight_controls/landing_gear_down";

constexpr const char* kBeginFooter =
    "A command that was begun stays down until it is ended, also when this tool is gone.\n"
    "\n"
    "Examples:\n"
    "  orvane command begin sim/flight_controls/brakes_max\n"
    "  orvane command end sim/flight_controls/brakes_max";

constexpr const char* kEndFooter =
    "Examples:\n"
    "  orvane command end sim/flight_controls/brakes_max";

constexpr const char* kHoldFooter =
    "Holds the commands down together, for a time or until Ctrl-C, and releases them in any case:\n"
    "also when the connection is lost on the way, on a new one.\n"
    "\n"
    "Examples:\n"
    "  orvane command hold -T 2.5 sim/flight_controls/brakes_max\n"
    "  orvane command hold sim/flight_controls/pitch_trim_up";

constexpr const char* kObserveFooter =
    "Prints a line for each press, whoever it comes from: the seconds since the start, and down\n"
    "and up, or \"pressed\" for both where they fell between two questions. Several presses "
    "between\n"
    "two questions count as one.\n"
    "\n"
    "Examples:\n"
    "  orvane command observe sim/autopilot/servos_toggle\n"
    "  orvane command observe --json -n 1 sim/operation/pause_toggle | jq -r .command";

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
    velmar::Client client(globals.ForClient());
    registerOrRefuse(client, names);
    for (const std::string& name : names) {
        client.run(name, action);
        if (action == velmar::Action::Begin) {
            tell(fmt::format("{} stays down until \"orvane command end {}\"", name, name));
        }
    }
    recordActions(globals, names, actionName);
    return ExitCode::Done;
}

std::string holdingText(const Names& names, double seconds) {
    const std::string text = fmt::format("holding {}", fmt::join(names, ", "));
    return seconds < kLongestHold ? fmt::format("{} for {} s; Ctrl-C releases", text, seconds)
                                  : text + " until Ctrl-C";
}

ExitCode hold(const GlobalOptions& globals, const Names& names, double seconds) {
    checkDistinct(names);
    HeldCommands held(globals, names);
    StatusLine status;
    status.Show(holdingText(names, seconds));
    held.HoldUntil(steady_clock::now() + secondsOf(seconds));
    status.Clear();
    recordActions(globals, names, "hold");
    return ExitCode::Done;
}

void show(const CommandEvent& event, double seconds, RecordWriter& records) {
    if (records.IsWanted()) {
        records.Write({{"time", std::round(seconds * 1000.0) / 1000.0},
                       {"command", event.command},
                       {"event", nameOf(event.kind)}});
    } else {
        writeOut(fmt::format("{:.3f} {} {}\n", seconds, event.command, nameOf(event.kind)));
    }
}

ExitCode observe(const GlobalOptions& globals, const Names& names, const Limits& limits) {
    checkDistinct(names);
    const auto begin = steady_clock::now();
    const auto end = endOf(limits);
    LastingClient lasting(globals, end, [](const std::string& line) {
        tell(line.empty() ? "the simulator is back" : line);
    });
    registerOrRefuse(lasting.Client(), names);
    RecordWriter records(globals.OutputFormat(), {"time", "command", "event"});
    CommandEvents events;
    std::uint64_t presses = 0;
    while (!lasting.IsOver() && presses < limits.count.value_or(~std::uint64_t{0})) {
        const auto next = steady_clock::now() + secondsOf(limits.interval);
        std::vector<velmar::CommandReport> reports;
        lasting.Try([&] { reports = lasting.Client().pollPresses(); });
        const double seconds = std::chrono::duration<double>(steady_clock::now() - begin).count();
        for (const CommandEvent& event : events.Take(reports)) {
            show(event, seconds, records);
            presses += event.kind == CommandEvent::Kind::Down ? 0 : 1;
        }
        sleepUntil(std::min(next, end));
    }
    return ExitCode::Done;
}

std::shared_ptr<Names> declareNames(CLI::App& command) {
    auto names = std::make_shared<Names>();
    command.add_option("NAME", *names, "Names of commands")->required();
    return names;
}

void addAction(CLI::App& parent, const GlobalOptions& globals, Work& work, const char* name,
               const char* description, velmar::Action action, const char* footer) {
    CLI::App* command = parent.add_subcommand(name, description);
    const auto names = declareNames(*command);
    command->footer(footer);
    command->callback([&, names, action, name] {
        work = [&, names, action, name] { return act(globals, *names, action, name); };
    });
}

void addHold(CLI::App& parent, const GlobalOptions& globals, Work& work) {
    CLI::App* command = parent.add_subcommand("hold", "Holds commands down for a time");
    const auto names = declareNames(*command);
    const auto seconds = std::make_shared<double>(kLongestHold);
    command
        ->add_option("-T,--seconds", *seconds, "How long; without it until Ctrl-C, at most a day")
        ->check(CLI::Range(0.0, kLongestHold));
    command->footer(kHoldFooter);
    command->callback([&, names, seconds] {
        work = [&, names, seconds] { return hold(globals, *names, *seconds); };
    });
}

void addObserve(CLI::App& parent, const GlobalOptions& globals, Work& work) {
    CLI::App* command = parent.add_subcommand("observe", "Prints when commands are pressed");
    const auto names = declareNames(*command);
    const auto limits = std::make_shared<Limits>();
    limits->interval = kUsualInterval;
    declareLimits(*command, *limits, "presses");
    command->footer(kObserveFooter);
    command->callback([&, names, limits] {
        work = [&, names, limits] { return observe(globals, *names, *limits); };
    });
}

} // namespace

void addCommand(CLI::App& app, const GlobalOptions& globals, Work& work) {
    CLI::App* command = app.add_subcommand("command", "Runs and observes commands");
    command->require_subcommand(1);
    command->footer(kCommandFooter);
    addAction(*command, globals, work, "once", "Runs commands, one after the other",
              velmar::Action::Once, kOnceFooter);
    addAction(*command, globals, work, "begin", "Presses commands and leaves them down",
              velmar::Action::Begin, kBeginFooter);
    addAction(*command, globals, work, "end", "Releases commands", velmar::Action::End, kEndFooter);
    addHold(*command, globals, work);
    addObserve(*command, globals, work);
}

} // namespace orvane::tool
