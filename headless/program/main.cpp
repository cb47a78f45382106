// headless-sim: loads a plugin and flies, without a screen.

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "headless/host/CrashReport.h"
#include "headless/host/LineReader.h"
#include "headless/host/PluginCheck.h"
#include "headless/host/PluginFinder.h"
#include "headless/host/Watchdog.h"
#include "headless/program/Beacon.h"
#include "headless/program/CommandLine.h"
#include "headless/program/CountingProcess.h"
#include "headless/program/MainLoop.h"
#include "headless/program/ScriptedFlight.h"
#include "headless/program/SystemOption.h"
#include "headless/prompt/Prompt.h"
#include "headless/recording/Recordings.h"
#include "headless/xplm/FunctionTable.h"

namespace headless {

namespace {

constexpr int kExitOk = 0;
constexpr int kExitPlugin = 1;
constexpr int kExitUsage = 2;
constexpr int kExitContract = 4;

int complain(const std::exception& error, int status) {
    std::cerr << "headless-sim: " << error.what() << '\n';
    return status;
}

int reportBreaches(const Notices& notices) {
    const std::vector<std::string> warnings = notices.Warnings();
    for (const std::string& warning : warnings) {
        std::cerr << "headless-sim: warning: " << warning << '\n';
    }
    return warnings.empty() ? kExitOk : kExitContract;
}

int reportStaying(const std::vector<std::string>& plugins) {
    for (const std::string& file : plugins) {
        std::cerr << "headless-sim: warning: " << file
                  << ": the plugin is still in the process after it was unloaded\n";
    }
    return kExitOk;
}

int unloadAndReport(Session& session, const SessionOptions& options) {
    const std::vector<std::string> staying = session.UnloadPlugins();
    if (!options.json) {
        std::cout << session.Statistics().Summary() << std::endl;
    }
    return options.strict ? reportBreaches(session.Simulator().Notices()) : reportStaying(staying);
}

// Standard input: with a prompt if a console is at a terminal, otherwise plain lines.
std::unique_ptr<ILineSource> consoleInput(Simulator& simulator, bool isConsole) {
    if (isConsole && Prompt::IsPossible()) {
        return std::make_unique<Prompt>(simulator);
    }
    return std::make_unique<LineReader>(STDIN_FILENO);
}

int fly(Session& session, const SessionOptions& options) {
    Recordings recordings(options);
    std::optional<ScriptedFlight> script;
    if (!options.scriptFile.empty()) {
        script.emplace(options);
    }
    const CrashReport crashReport(session.Simulator());
    std::optional<Watchdog> watchdog;
    if (options.watchdogSeconds.has_value()) {
        watchdog.emplace(session.Simulator(), *options.watchdogSeconds);
    }
    // Created before the plugin starts, so that no signal can end the process inside the plugin.
    std::optional<StatsReporter> stats;
    if (options.stats || options.budgetMicroseconds.has_value()) {
        stats.emplace(session.Simulator(), options);
    }
    std::optional<Beacon> beacon;
    if (options.beacon) {
        beacon.emplace(worldVersion(options.world.version).internalVersion);
        session.AddListener(*beacon);
    }
    const auto input = consoleInput(session.Simulator(), options.console);
    MainLoop loop(session, options, *input, stats.has_value() ? &*stats : nullptr);
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
    const int statusAtEnd = unloadAndReport(session, options);
    return status == kExitOk ? statusAtEnd : status;
}

// One line per function: name, header, kind, and what differs, separated by tabs.
int listFunctions() {
    for (const SdkFunction& function : sdkFunctions()) {
        std::cout << function.name << '\t' << function.header << '\t' << describe(function.kind)
                  << '\t' << function.difference << '\n';
    }
    return kExitOk;
}

void checkPlugin(const std::string& path) {
    const PluginFile plugin(findPlugin(path).file);
    const std::string& file = plugin.Path();
    for (const char* const entryPoint : {"XPluginStart", "XPluginStop", "XPluginEnable",
                                         "XPluginDisable", "XPluginReceiveMessage"}) {
        if (!plugin.Mentions(entryPoint)) {
            throw PluginError(file + ": not a plugin: it has no " + entryPoint);
        }
    }
    const PluginCheck check(plugin);
    std::cout << file << ": " << check.Summary() << '\n';
    if (!check.Missing().empty()) {
        throw PluginError(file + ": the plugin " + check.DescribeMissing());
    }
}

// Continues after a plugin that cannot be loaded.
int checkPlugins(const std::vector<std::string>& paths) {
    int status = kExitOk;
    for (const std::string& path : paths) {
        try {
            checkPlugin(path);
        } catch (const PluginError& error) {
            status = complain(error, kExitPlugin);
        }
    }
    return status;
}

int runSession(const SessionOptions& options) {
    Session session(options);
    for (const std::string& warning : session.Warnings()) {
        std::cerr << "headless-sim: warning: " << warning << '\n';
    }
    return fly(session, options);
}

int parseAndRun(int argc, char** argv) {
    CLI::App app("The headless simulator: runs plugins without a screen.", "headless-sim");
    SessionOptions options;
    OtherOptions other;
    declareOptions(app, options, other);
    const std::vector<std::string> words(argv + 1, argv + argc);
    // For the completion scripts.
    if (words.size() > 1 && words.front() == "__complete") {
        std::cout << completionsOf(app, words.back());
        return kExitOk;
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        return app.exit(request);
    }
    requireNoUnknownOption(app);
    if (options.stats) {
        countAllocations(argv);
    }
    if (other.listFunctions) {
        return listFunctions();
    }
    if (!other.system.empty()) {
        enterSystem(other.system, options, app.count("--log") > 0);
    } else if (options.plugins.empty()) {
        throw std::invalid_argument("no plugin is given; see headless-sim --help");
    }
    return other.check ? checkPlugins(options.plugins) : runSession(options);
}

void requireOutputWritten() {
    if (!std::cout.flush() || std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw std::runtime_error("standard output cannot be written");
    }
}

// A file or a socket would take the number of a standard stream that is closed, and get what is
// printed. Reading the first and writing the second fail as before; errors go nowhere.
void fillClosedStreams() {
    constexpr std::array kModes{O_WRONLY, O_RDONLY, O_WRONLY};
    for (int stream = 0; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) == -1) {
            ::open("/dev/null", kModes[static_cast<std::size_t>(stream)]);
        }
    }
}

} // namespace

} // namespace headless

int main(int argc, char** argv) {
    headless::fillClosedStreams();
    try {
        const int status = headless::parseAndRun(argc, argv);
        if (status == headless::kExitOk) {
            headless::requireOutputWritten();
        }
        return status;
    } catch (const headless::PluginError& error) {
        return headless::complain(error, headless::kExitPlugin);
    } catch (const std::exception& error) {
        return headless::complain(error, headless::kExitUsage);
    }
}
