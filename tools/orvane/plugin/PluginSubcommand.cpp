#include <map>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <CLI/Validators.hpp>
#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/plugin/ChosenSimulators.h"
#include "tools/orvane/plugin/Installer.h"
#include "tools/orvane/plugin/PluginFiles.h"
#include "tools/orvane/plugin/Status.h"

namespace orvane::tool {

namespace {

namespace fs = std::filesystem;

using plugin::ChosenSimulators;
using plugin::FileStep;
using plugin::FileSteps;
using plugin::Installer;

constexpr Description kPlugin{
    "plugin", "Install or remove the plugin, or show what is installed",
    R"(A simulator is a folder with Resources/plugins and the program X-Plane-x86_64 or
X-Plane. Without FOLDER these commands find the simulators that X-Plane's
installer lists in ~/.x-plane.

Examples:
  orvane plugin install --dry-run
  orvane plugin install ~/X-Plane
  orvane plugin status)"};

constexpr Description kInstall{
    "install", "Copy the plugin into a simulator",
    R"(The plugin goes to Resources/plugins/XPlaneOrvane. Nothing else is changed, and
a configuration file is kept. A running simulator keeps the plugin that it has
loaded until it is restarted.

Examples:
  orvane plugin install --dry-run
  orvane plugin install ~/X-Plane
  orvane plugin install ~/X-Plane --from ~/Downloads/XPlaneOrvane
  orvane plugin install --headless build/run)"};

constexpr Description kRemove{
    "remove", "Remove the plugin from a simulator",
    R"(Files in the plugin's folder that are not the plugin's are left there. The
configuration file is kept unless --purge is given. Exit status 3 if the plugin
is not installed.

Examples:
  orvane plugin remove --dry-run
  orvane plugin remove ~/X-Plane
  orvane plugin remove --headless --purge build/run)"};

constexpr Description kStatus{
    "status", "Show what is installed and running, and explain the plugin's log lines",
    R"(Asks the server for its version, as info does, and looks for the program that has
the port, for a firewall, and for the plugin's lines in each simulator's Log.txt.
Please include what it prints when you report a problem.

Examples:
  orvane plugin status
  orvane plugin status ~/X-Plane
  orvane plugin status --headless build/run
  orvane plugin status --json | jq -r 'select(.subject == "installed").value')"};

struct ChangeOptions {
    ChosenSimulators simulators{};
    bool dryRun = false;
};

struct InstallOptions : ChangeOptions {
    std::string from{};
};

struct RemoveOptions : ChangeOptions {
    bool purge = false;
};

// As one would type it in a shell.
std::string quoted(const std::string& word) {
    constexpr const char* kPlain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+";
    if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) {
        return word;
    }
    std::string result = "'";
    for (const char character : word) {
        result += character == '\'' ? "'\\''" : std::string(1, character);
    }
    return result + "'";
}

std::string wordFor(const FileStep& step, bool dryRun) {
    if (!dryRun) {
        return step.action;
    }
    const std::map<std::string, std::string> infinitives{
        {"copied", "copy"}, {"removed", "remove"}, {"kept", "keep"}, {"left", "leave"}};
    return "would " + infinitives.at(step.action);
}

// Prints what became of files as records or as lines, and what else there is to say to people.
class Reporter final {
public:
    Reporter(const GlobalOptions& globals, bool dryRun)
        : records(globals.OutputFormat(), {"simulator", "action", "file"}), dryRun(dryRun) {}

    void Show(const fs::path& simulator, const FileSteps& steps) {
        for (const FileStep& step : steps) {
            const std::string word = wordFor(step, dryRun);
            records.Write({{"simulator", simulator.string()},
                           {"action", word},
                           {"file", step.file.string()}});
            Say(fmt::format("{:<8} {}", word, step.file.string()));
        }
    }

    void Say(const std::string& line) const {
        if (!records.IsWanted()) {
            printLine(line);
        }
    }

private:
    RecordWriter records;
    const bool dryRun;
};

std::vector<Installer> installersFor(const ChangeOptions& options) {
    const auto mode = options.dryRun ? Installer::Mode::DryRun : Installer::Mode::Real;
    std::vector<Installer> installers;
    for (const fs::path& simulator : chosenToChange(options.simulators)) {
        installers.emplace_back(simulator, mode).RequireOwnFolder();
    }
    return installers;
}

std::string summary(const std::string& version, const Installer& installer,
                    const std::string& before) {
    return fmt::format("The plugin {} is in {}{}.", version, installer.Simulator().string(),
                       before.empty() ? "" : ", in place of " + before);
}

ExitCode install(const GlobalOptions& globals, const InstallOptions& options) {
    const std::vector<Installer> installers = installersFor(options);
    const fs::path source = plugin::findPluginToCopy(options.from);
    const std::string version = plugin::pluginVersionOf(source / plugin::kPluginFile).value_or("");
    Reporter reporter(globals, options.dryRun);
    for (const Installer& installer : installers) {
        const std::string before = installer.InstalledVersion();
        reporter.Show(installer.Simulator(), installer.Install(source));
        if (!options.dryRun) {
            reporter.Say(summary(version, installer, before));
            reporter.Say(fmt::format("To {}: orvane plugin remove {}{}",
                                     before.empty() ? "undo" : "remove it",
                                     options.simulators.headless ? "--headless " : "",
                                     quoted(installer.Simulator().string())));
        }
    }
    reporter.Say(options.dryRun ? "Nothing was changed."
                                : "If the simulator runs, restart it to load the plugin.");
    return ExitCode::Done;
}

ExitCode remove(const GlobalOptions& globals, const RemoveOptions& options) {
    const auto configuration =
        options.purge ? Installer::Configuration::Remove : Installer::Configuration::Keep;
    Reporter reporter(globals, options.dryRun);
    ExitCode result = ExitCode::Done;
    for (const Installer& installer : installersFor(options)) {
        if (!installer.IsInstalled()) {
            tell(fmt::format("{}: the plugin is not installed", installer.Simulator().string()));
            result = ExitCode::NotFoundOrRefused;
        }
        reporter.Show(installer.Simulator(), installer.Remove(configuration));
    }
    if (options.dryRun) {
        reporter.Say("Nothing was changed.");
    }
    return result;
}

// An empty variable of a script must not stand for a simulator that nobody named.
CLI::Validator notEmpty() {
    const auto problem = [](const std::string& name) -> std::string {
        return name.empty() ? "the name is empty" : "";
    };
    return {problem, ""};
}

void declareFolder(CLI::App& command, ChosenSimulators& chosen) {
    command
        .add_option("FOLDER", chosen.folder, "The simulator's folder; without one, those listed")
        ->check(notEmpty())
        ->type_name("FOLDER");
    command.add_flag("--headless", chosen.headless,
                     "FOLDER is for headless-sim --system, and needs no X-Plane program");
}

void declareChange(CLI::App& command, ChangeOptions& options) {
    declareFolder(command, options.simulators);
    command.add_flag("--all", options.simulators.all,
                     "All simulators listed, if there are several");
    command.add_flag("--dry-run", options.dryRun, "Say what would be done, and change nothing");
}

void addInstall(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<InstallOptions>(kInstall, install);
    declareChange(command, options);
    command
        .add_option("--from", options.from,
                    "The plugin's folder XPlaneOrvane; without one, the one beside this tool")
        ->check(notEmpty())
        ->type_name("FOLDER");
}

void addRemove(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<RemoveOptions>(kRemove, remove);
    declareChange(command, options);
    command.add_flag("--purge", options.purge, "Remove the configuration file as well");
}

} // namespace

void addPlugin(Subcommands& subcommands) {
    Subcommands group = subcommands.AddGroup(kPlugin);
    addInstall(group);
    addRemove(group);
    const auto [status, options] = group.Add<ChosenSimulators>(kStatus, plugin::showStatus);
    declareFolder(status, options);
}

} // namespace orvane::tool
