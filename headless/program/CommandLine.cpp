#include "headless/program/CommandLine.h"

#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "headless/lists/ParsedNumber.h"
#include "headless/recording/Replay.h"

namespace headless {

namespace {

constexpr double kMaxDurationSeconds = 1e9;
constexpr int kMostRecorded = 100'000;

constexpr const char* kFooter =
    "Examples:\n"
    "  headless-sim lin.xpl                         fly until Ctrl-C\n"
    "  headless-sim lin.xpl --duration 10 --hz 120  fly 10 seconds at 120 frames per second\n"
    "  headless-sim lin.xpl --console --paused      step frames by hand; type help\n"
    "  headless-sim lin.xpl --script my.scenario    carry out what is written there\n"
    "  headless-sim lin.xpl --replay flight.fdr     fly what was recorded\n"
    "  headless-sim plugins/one plugins/two         fly two plugins, given by their folders\n"
    "  headless-sim --system ~/X-Plane              fly what is in its Resources/plugins\n"
    "  headless-sim --check lin.xpl                 check whether the plugin can be loaded";

// CLI::Range lets nan pass.
CLI::Validator between(double least, double most) {
    std::ostringstream bounds;
    bounds << "from " << least << " to " << most;
    const auto problem = [=, words = bounds.str()](const std::string& text) -> std::string {
        const std::optional<double> number = parsedNumber<double>(text);
        const bool isWithin = number && *number >= least && *number <= most;
        return isWithin ? "" : text + " is not a number " + words;
    };
    return {problem, bounds.str()};
}

// An option with an empty value, from an unset variable of a script, would be as good as not given.
void requireValues(CLI::App& app) {
    const auto problem = [](const std::string& text) -> std::string {
        return text.empty() ? "the value is empty" : "";
    };
    for (CLI::Option* const option : app.get_options()) {
        if (option->get_items_expected_max() > 0) {
            option->check(CLI::Validator(problem, ""));
        }
    }
}

} // namespace

void declareOptions(CLI::App& app, SessionOptions& options, OtherOptions& other) {
    app.add_option("PLUGIN", options.plugins, "The plugins to load: libraries (.xpl) or folders")
        ->option_text("...");
    app.add_option("--system", other.system,
                   "A folder laid out like the simulator's, whose plugins are loaded")
        ->type_name("FOLDER");
    app.add_option("--datarefs", options.world.datarefsFile, "Datarefs to add, as in DataRefs.txt")
        ->type_name("FILE");
    app.add_option("--commands", options.world.commandsFile, "Commands to add, as in Commands.txt")
        ->type_name("FILE");
    app.add_option("--world", options.world.version, "Version of the simulator: 10, 11 or 12")
        ->check(between(10, 12))
        ->capture_default_str();
    app.add_option("--ground", options.world.groundMetres, "Elevation of the ground in metres")
        ->check(between(-500.0, 9000.0))
        ->capture_default_str();
    app.add_option("--hz", options.framesPerSecond, "Frames per second")
        ->check(
            between(SessionOptions::kFewestFramesPerSecond, SessionOptions::kMostFramesPerSecond))
        ->capture_default_str();
    app.add_option("--duration", options.durationSeconds, "Simulated seconds to fly")
        ->check(between(0.0, kMaxDurationSeconds));
    app.add_option("--log", options.logFile, "Where the simulator's log is written")
        ->capture_default_str()
        ->type_name("FILE");
    app.add_option("--watchdog", options.watchdogSeconds,
                   "End the run if a callback takes more seconds than this")
        ->check(between(0.1, kMaxDurationSeconds));
    app.add_option("--fail", options.failures,
                   "Make an SDK function fail, from call N on; can be given several times")
        ->allow_extra_args(false)
        ->option_text("FUNCTION[:N]");
    app.add_option("--freeze", options.freezes,
                   "Run no frames for a while: 3s@10s is 3 s at second 10")
        ->allow_extra_args(false)
        ->option_text("TIME@TIME");
    app.add_flag("--beacon", options.beacon,
                 "Announce this simulator on the network, once a second");
    auto* const console =
        app.add_flag("--console", options.console, "Take statements from standard input");
    auto* const script =
        app.add_option("--script", options.scriptFile,
                       "Carry out the statements of this file; - for standard input")
            ->excludes(console)
            ->type_name("FILE");
    app.add_option("--junit", options.junitFile, "Write the script's results to this file")
        ->needs(script)
        ->type_name("FILE");
    auto* const replay =
        app.add_option("--replay", options.replayFile, "Flight data to play: FILE.fdr or FILE.csv")
            ->type_name("FILE");
    app.add_option("--speed", options.replaySpeed, "Play it this many times as fast")
        ->check(between(Replay::kSlowest, Replay::kFastest))
        ->needs(replay);
    app.add_option("--record", options.record,
                   "Record these datarefs to FILE.csv; -- ends the names")
        ->expected(2, kMostRecorded)
        ->option_text("FILE NAME...");
    app.add_flag("--stats", options.stats,
                 "At the end and at SIGUSR1, print what each plugin used");
    app.add_flag("--json", options.json, "Statistics as JSON, and no other summary")
        ->needs("--stats");
    app.add_option("--budget-us", options.budgetMicroseconds,
                   "Warn of each frame in which a plugin takes more CPU time, in microseconds")
        ->check(between(0.0, kMaxDurationSeconds));
    app.add_flag("--paused", options.paused, "Start paused, with simulated time");
    app.add_flag("--strict", options.strict,
                 "Refuse functions that only answer 0, and breaches of the SDK's rules");
    app.add_flag("--check", other.check, "Only list the names the plugin uses and lacks");
    app.add_flag("--list-functions", other.listFunctions,
                 "Only list the SDK's functions and how much of each is here");
    requireValues(app);
    app.set_version_flag("--version", "headless-sim " ORVANE_VERSION);
    // requireNoUnknownOption() reports what is left over.
    app.allow_extras();
    app.footer(kFooter);
}

void requireNoUnknownOption(const CLI::App& app) {
    const std::vector<std::string> extras = app.remaining();
    if (!extras.empty()) {
        throw std::invalid_argument("unknown option " + extras.front() +
                                    "; see headless-sim --help");
    }
}

std::string completionsOf(const CLI::App& app, const std::string& word) {
    if (!word.starts_with('-')) {
        return ":files\n";
    }
    std::string lines;
    for (const CLI::Option* const option : app.get_options()) {
        const std::string& name = option->get_name();
        if (name.starts_with(word)) {
            lines += name + "\t" + option->get_description() + "\n";
        }
    }
    return lines;
}

} // namespace headless
