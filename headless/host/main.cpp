// headless-sim: loads a plugin and flies, without a screen.

#include <algorithm>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "headless/host/CountingProcess.h"
#include "headless/host/CrashReport.h"
#include "headless/host/MainLoop.h"
#include "headless/host/PluginCheck.h"
#include "headless/host/PluginFinder.h"
#include "headless/host/SystemOption.h"
#include "headless/host/Watchdog.h"
#include "headless/prompt/ConsoleInput.h"
#include "headless/recording/Recordings.h"
#include "headless/scenario/ScriptedFlight.h"
#include "headless/world/TextLines.h"
#include "headless/xplm/FunctionTable.h"

namespace {

constexpr int kExitOk = 0;
constexpr int kExitPlugin = 1;
constexpr int kExitUsage = 2;
constexpr int kExitContract = 4;

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

int mentionStaying(const std::vector<std::string>& plugins) {
    for (const std::string& file : plugins) {
        std::cerr << "headless-sim: warning: " << file
                  << ": the plugin is still in the process after it was unloaded\n";
    }
    return kExitOk;
}

// Options that do something other than fly, and the system folder.
struct Questions {
    std::string system{};
    bool check = false;
    bool listFunctions = false;
};

void declareOptions(CLI::App& app, headless::SessionOptions& options, Questions& what) {
    app.add_option("PLUGIN", options.plugins, "The plugins to load: libraries (.xpl) or folders");
    app.add_option("--system", what.system,
                   "A folder laid out as the simulator's, whose plugins are loaded");
    app.add_option("--datarefs", options.datarefsFile, "Datarefs to add, as in DataRefs.txt");
    app.add_option("--commands", options.commandsFile, "Commands to add, as in Commands.txt");
    app.add_option("--world", options.world, "Version of the simulator: 10, 11 or 12")
        ->check(CLI::IsMember({10, 11, 12}))
        ->capture_default_str();
    app.add_option("--ground", options.groundMetres, "Elevation of the ground in metres")
        ->check(CLI::Range(-500.0, 9000.0))
        ->capture_default_str();
    app.add_option("--hz", options.framesPerSecond, "Frames per second")
        ->check(CLI::Range(headless::SessionOptions::kFewestFramesPerSecond,
                           headless::SessionOptions::kMostFramesPerSecond))
        ->capture_default_str();
    app.add_option("--duration", options.durationSeconds, "Simulated seconds to fly")
        ->check(CLI::Range(0.0, kMaxDurationSeconds));
    app.add_option("--log", options.logFile, "Where the simulator's log is written")
        ->capture_default_str();
    app.add_option("--watchdog", options.watchdogSeconds,
                   "End the run if a callback takes more seconds than this")
        ->check(CLI::Range(0.1, kMaxDurationSeconds));
    app.add_option("--fail", options.failures,
                   "Make an SDK function fail, from call N on: FUNCTION[:N]")
        ->allow_extra_args(false);
    app.add_option("--freeze", options.freezes,
                   "Run no frames for a while: 3s@10s is 3 s at second 10")
        ->allow_extra_args(false);
    auto* const console =
        app.add_flag("--console", options.console, "Take statements from standard input");
    auto* const script =
        app.add_option("--script", options.scriptFile,
                       "Carry out the statements of this file; - for standard input")
            ->excludes(console);
    app.add_option("--junit", options.junitFile, "Write the script's results to this file")
        ->needs(script);
    auto* const replay =
        app.add_option("--replay", options.replayFile, "Flight data to play: FILE.fdr or FILE.csv");
    app.add_option("--speed", options.replaySpeed, "Play it so many times as fast")
        ->check(CLI::Range(headless::Replay::kSlowest, headless::Replay::kFastest))
        ->needs(replay);
    app.add_option("--record", options.record,
                   "Record these datarefs to FILE.csv; -- ends the names")
        ->expected(2, kMostRecorded)
        ->type_name("FILE NAME...");
    app.add_flag("--stats", options.stats,
                 "At the end and at SIGUSR1, print what each plugin took");
    app.add_flag("--json", options.json, "Statistics as JSON, and no other summary")
        ->needs("--stats");
    app.add_option("--budget-us", options.budgetMicroseconds,
                   "Warn of each frame in which a plugin takes more CPU time, in microseconds")
        ->check(CLI::Range(0.0, kMaxDurationSeconds));
    app.add_flag("--paused", options.paused, "Start paused, with simulated time");
    app.add_flag("--strict", options.strict,
                 "Refuse functions that only answer 0, and breaches of the SDK's rules");
    app.add_flag("--check", what.check, "Only list the names the plugin uses and lacks");
    app.add_flag("--list-functions", what.listFunctions,
                 "Only list the SDK's functions and how much of each is here");
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

int complain(const std::exception& error, int status) {
    std::cerr << "headless-sim: " << error.what() << '\n';
    return status;
}

int judge(const headless::Notices& notices) {
    const std::vector<std::string> warnings = notices.Warnings();
    for (const std::string& warning : warnings) {
        std::cerr << "headless-sim: warning: " << warning << '\n';
    }
    return warnings.empty() ? kExitOk : kExitContract;
}

int fly(headless::Session& session, const headless::SessionOptions& options) {
    headless::Recordings recordings(options);
    std::optional<headless::ScriptedFlight> script;
    if (!options.scriptFile.empty()) {
        script.emplace(options);
    }
    const headless::CrashReport crashReport(session.Simulator());
    std::optional<headless::Watchdog> watchdog;
    if (options.watchdogSeconds.has_value()) {
        watchdog.emplace(session.Simulator(), *options.watchdogSeconds);
    }
    // Created before the plugin starts, so that no signal can end the process inside the plugin.
    std::optional<headless::StatsReporter> stats;
    if (options.stats || options.budgetMicroseconds.has_value()) {
        stats.emplace(session.Simulator(), options);
    }
    const auto input = headless::makeConsoleInput(session.Simulator(), options.console);
    headless::MainLoop loop(session, options, *input, stats.has_value() ? &*stats : nullptr);
    session.StartPlugins();
    recordings.Begin(session);
    if (!options.console && !script.has_value()) {
        loop.EndWhen([&] { return recordings.IsReplayOver(); });
    }
    const int status = script.has_value() ? script->Fly(loop) : loop.Run();
    recordings.Finish();
    if (stats.has_value()) {
        stats->Report();
    }
    const std::vector<std::string> staying = session.UnloadPlugins();
    if (!options.json) {
        std::cout << session.Statistics().Summary() << std::endl;
    }
    const int judged =
        options.strict ? judge(session.Simulator().Notices()) : mentionStaying(staying);
    return status == kExitOk ? judged : status;
}

// One line per function: name, header, kind, and what differs, separated by tabs.
int listFunctions() {
    for (const headless::SdkFunction& function : headless::sdkFunctions()) {
        std::cout << function.name << '\t' << function.header << '\t'
                  << headless::describe(function.kind) << '\t' << function.difference << '\n';
    }
    return kExitOk;
}

void checkPlugin(const std::string& path) {
    const std::string file = headless::findPlugin(path).file;
    const headless::PluginCheck check((headless::PluginFile(file)));
    std::cout << file << ": " << check.Summary() << '\n';
    if (!check.Missing().empty()) {
        throw headless::PluginError(file + ": the plugin " + check.DescribeMissing());
    }
}

// Continues after a plugin that cannot be loaded.
int checkPlugins(const std::vector<std::string>& paths) {
    int status = kExitOk;
    for (const std::string& path : paths) {
        try {
            checkPlugin(path);
        } catch (const headless::PluginError& error) {
            status = complain(error, kExitPlugin);
        }
    }
    return status;
}

int runSession(const headless::SessionOptions& options) {
    headless::Session session(options);
    for (const std::string& warning : session.Warnings()) {
        std::cerr << "headless-sim: warning: " << warning << '\n';
    }
    return fly(session, options);
}

int parseAndRun(int argc, char** argv) {
    CLI::App app("The headless simulator: runs a plugin without a screen.", "headless-sim");
    headless::SessionOptions options;
    Questions what;
    declareOptions(app, options, what);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    }
    requireNoUnknownOption(app);
    if (options.stats) {
        headless::countAllocations(argv);
    }
    if (what.listFunctions) {
        return listFunctions();
    }
    if (!what.system.empty()) {
        headless::enterSystem(what.system, options, app.count("--log") > 0);
    } else if (options.plugins.empty()) {
        throw std::invalid_argument("no plugin is given; see headless-sim --help");
    }
    return what.check ? checkPlugins(options.plugins) : runSession(options);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return parseAndRun(argc, argv);
    } catch (const headless::PluginError& error) {
        return complain(error, kExitPlugin);
    } catch (const std::exception& error) {
        return complain(error, kExitUsage);
    }
}
