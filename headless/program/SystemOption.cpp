#include "headless/program/SystemOption.h"

#include <filesystem>
#include <utility>
#include <vector>

#include "headless/host/PluginFinder.h"
#include "headless/scenario/Scenario.h"

namespace headless {

namespace {

void makeAbsolute(std::string& file) {
    if (!file.empty()) {
        file = std::filesystem::absolute(file).string();
    }
}

} // namespace

void enterSystem(const std::string& folder, SessionOptions& options, bool ownLog) {
    std::vector<std::string> plugins;
    for (const PluginPlace& place : findPluginsOfSystem(folder)) {
        plugins.push_back(place.file);
    }
    plugins.insert(plugins.end(), options.plugins.begin(), options.plugins.end());
    options.plugins = std::move(plugins);
    for (std::string& plugin : options.plugins) {
        makeAbsolute(plugin);
    }
    makeAbsolute(options.world.datarefsFile);
    makeAbsolute(options.world.commandsFile);
    if (options.scriptFile != Scenario::kStandardInput) {
        makeAbsolute(options.scriptFile);
    }
    makeAbsolute(options.junitFile);
    makeAbsolute(options.replayFile);
    if (!options.record.empty()) {
        makeAbsolute(options.record.front());
    }
    if (ownLog) {
        makeAbsolute(options.logFile);
    }
    std::filesystem::current_path(folder);
}

} // namespace headless
