// headless-sim: loads a plugin and flies, without a screen.

#include <algorithm>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "headless/host/CrashReport.h"
#include "headless/host/PluginCheck.h"
#include "headless/host/PluginFinder.h"
#include "headless/host/Watchdog.h"
#include "headless/lists/TextLines.h"
#include "headless/program/Beacon.h"
#include "headless/program/CommandLine.h"
#include "headless/program/CountingProcess.h"
#include "headless/program/MainLoop.h"
#include "headless/program/ScriptedFlight.h"
#include "headless/program/SystemOption.h"
#include "headless/prompt/ConsoleInput.h"
#include "headless/recording/Recordings.h"
#include "headless/xplm/FunctionTable.h"

namespace {

constexpr int kExitOk = 0;
constexpr int kExitPlugin = 1;
constexpr int kExitUsage = 2;
constexpr int kExitContract = 4;

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

int mentionStaying(const std::vector<std::string>& plugins) {
    for (const std::string& file : plugins) {
        std::cerr << "headless-sim: warning: " << file
                  << ": the plugin is still in the process after it was unloaded\n";
    }
    return kExitOk;
}

int unloadAndJudge(headless::Session& session, const headless::SessionOptions& options) {
    const std::vector<std::string> staying = session.UnloadPlugins();
    if (!options.json) {
        std::cout << session.Statistics().Summary() << std::endl;
    }
    return options.strict ? judge(session.Simulator().Notices()) : mentionStaying(staying);
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
    std::optional<headless::Beacon> beacon;
    if (options.beacon) {
        beacon.emplace(headless::worldVersion(options.world).internalVersion);
        session.AddListener(*beacon);
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
    const int judged = unloadAndJudge(session, options);
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
    headless::Questions what;
    headless::declareOptions(app, options, what);
    const std::vector<std::string> words(argv + 1, argv + argc);
    // For the completion scripts.
    if (words.size() > 1 && words.front() == "__complete") {
        std::cout << headless::completionsOf(app, words.back());
        return kExitOk;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    }
    headless::requireNoUnknownOption(app);
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
