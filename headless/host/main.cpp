// headless-sim: loads a plugin and flies, without a screen.

#include <algorithm>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "headless/host/AbortReport.h"
#include "headless/host/MainLoop.h"
#include "headless/host/PluginCheck.h"
#include "headless/host/Watchdog.h"
#include "headless/world/TextLines.h"
#include "headless/xplm/FunctionTable.h"

namespace {

constexpr int kExitOk = 0;
constexpr int kExitPlugin = 1;
constexpr int kExitUsage = 2;

constexpr double kMaxFramesPerSecond = 100'000.0;
constexpr double kMaxDurationSeconds = 1e9;

constexpr const char* kFooter =
    "Examples:\n"
    "  headless-sim lin.xpl                         fly until Ctrl-C\n"
    "  headless-sim lin.xpl --duration 10 --hz 120  fly 10 seconds at 120 frames per second\n"
    "  headless-sim lin.xpl --console --paused      step frames by hand; type help\n"
    "  headless-sim --check lin.xpl                 tell whether the plugin can be loaded";

// What to do other than to fly.
struct Questions {
    bool check = false;
    bool listFunctions = false;
};

void declareOptions(CLI::App& app, headless::SessionOptions& options, Questions& what) {
    app.add_option("PLUGIN", options.plugin, "The plugin to load (.xpl)");
    app.add_option("--datarefs", options.datarefsFile, "Datarefs to add, as in DataRefs.txt");
    app.add_option("--commands", options.commandsFile, "Commands to add, as in Commands.txt");
    app.add_option("--world", options.world, "Version of the simulator: 10, 11 or 12")
        ->check(CLI::IsMember({10, 11, 12}))
        ->capture_default_str();
    app.add_option("--ground", options.groundMetres, "Elevation of the ground in metres")
        ->check(CLI::Range(-500.0, 9000.0))
        ->capture_default_str();
    app.add_option("--hz", options.framesPerSecond, "Frames per second")
        ->check(CLI::Range(0.1, kMaxFramesPerSecond))
        ->capture_default_str();
    app.add_option("--duration", options.durationSeconds, "Simulated seconds to fly")
        ->check(CLI::Range(0.0, kMaxDurationSeconds));
    app.add_option("--log", options.logFile, "Where the simulator's log is written")
        ->capture_default_str();
    app.add_option("--watchdog", options.watchdogSeconds,
                   "End a plugin that is longer than so many seconds in a callback")
        ->check(CLI::Range(0.1, kMaxDurationSeconds));
    app.add_flag("--console", options.console, "Take commands from standard input");
    app.add_flag("--paused", options.paused, "Stand still at first");
    app.add_flag("--strict", options.strict,
                 "Refuse a plugin that uses functions which only answer 0");
    app.add_flag("--check", what.check, "Only tell which names the plugin uses and lacks");
    app.add_flag("--list-functions", what.listFunctions,
                 "Only list the SDK's functions and how much of each is here");
    app.set_version_flag("--version", "headless-sim " ORVANE_VERSION);
    // What is left over is named by requireNothingElse().
    app.allow_extras();
    app.footer(kFooter);
}

void requireNothingElse(const CLI::App& app, bool needsPlugin,
                        const headless::SessionOptions& options) {
    const std::vector<std::string> extras = app.remaining();
    const auto option = std::find_if(extras.begin(), extras.end(),
                                     [](const std::string& word) { return word[0] == '-'; });
    if (option != extras.end()) {
        throw std::invalid_argument("unknown option " + *option + "; see headless-sim --help");
    }
    if (!extras.empty()) {
        throw std::invalid_argument("unexpected argument " + extras.front() +
                                    "; one plugin is loaded at a time");
    }
    if (needsPlugin && options.plugin.empty()) {
        throw std::invalid_argument("no plugin is given; see headless-sim --help");
    }
}

int complain(const std::exception& error, int status) {
    std::cerr << "headless-sim: " << error.what() << '\n';
    return status;
}

int fly(headless::Session& session, const headless::SessionOptions& options) {
    const headless::AbortReport abortReport(session.Simulator().Log(), options.plugin);
    std::optional<headless::Watchdog> watchdog;
    if (options.watchdogSeconds.has_value()) {
        watchdog.emplace(session.Simulator(), *options.watchdogSeconds);
    }
    // Before the plugin starts, so that no signal can end the process with the plugin in it.
    headless::MainLoop loop(session, options);
    session.StartPlugin();
    loop.Run();
    const bool gone = session.UnloadPlugin();
    std::cout << session.Statistics().Summary() << std::endl;
    if (!gone) {
        std::cerr << "headless-sim: warning: " << options.plugin
                  << ": the plugin is still in the process after it was unloaded\n";
    }
    return kExitOk;
}

// A line a function: its name, header, kind, and what differs, separated by tabs.
int listFunctions() {
    for (const headless::SdkFunction& function : headless::sdkFunctions()) {
        std::cout << function.name << '\t' << function.header << '\t'
                  << headless::describe(function.kind) << '\t' << function.difference << '\n';
    }
    return kExitOk;
}

int checkPlugin(const std::string& path) {
    try {
        const headless::PluginCheck check((headless::PluginFile(path)));
        std::cout << path << ": " << check.Summary() << '\n';
        if (check.Missing().empty()) {
            return kExitOk;
        }
        throw headless::PluginError(path + ": the plugin " + check.DescribeMissing());
    } catch (const headless::PluginError& error) {
        return complain(error, kExitPlugin);
    }
}

int runSession(const headless::SessionOptions& options) {
    try {
        headless::Session session(options);
        for (const std::string& warning : session.Warnings()) {
            std::cerr << "headless-sim: warning: " << warning << '\n';
        }
        return fly(session, options);
    } catch (const headless::PluginError& error) {
        return complain(error, kExitPlugin);
    } catch (const std::exception& error) {
        return complain(error, kExitUsage);
    }
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
    requireNothingElse(app, !what.listFunctions, options);
    if (what.listFunctions) {
        return listFunctions();
    }
    return what.check ? checkPlugin(options.plugin) : runSession(options);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return parseAndRun(argc, argv);
    } catch (const std::exception& error) {
        return complain(error, kExitUsage);
    }
}
