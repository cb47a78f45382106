#include "headless/host/Session.h"

#include <algorithm>
#include <chrono>

#include "headless/world/CommandsFile.h"
#include "headless/world/DatarefsFile.h"
#include "headless/world/DefaultWorld.h"
#include "headless/xplm/planes/Aircraft.h"
#include "headless/xplm/scenery/Terrain.h"

namespace headless {

namespace {

// Seconds.
constexpr double kLongestStep = 0.05;

} // namespace

Session::Session(const SessionOptions& sessionOptions)
    : options(sessionOptions), paused(sessionOptions.paused) {
    buildWorld();
    simulator.Log().OpenFile(options.logFile);
    // The file has it all; a long run must not grow by its log.
    simulator.Log().KeepInMemory(false);
    flightModel = std::make_unique<FlightModel>(simulator);
}

void Session::StartPlugin() {
    plugin.reset();
    plugin = std::make_unique<PluginHost>(simulator, options.plugin, options.strict);
    plugin->Start();
    plugin->Enable();
    LoadAircraft(kDefaultAircraft);
    simulator.Plugins().Broadcast(XPLM_MSG_AIRPORT_LOADED, nullptr);
    simulator.Plugins().Broadcast(XPLM_MSG_SCENERY_LOADED, nullptr);
}

void Session::ReloadPlugin() {
    if (!UnloadPlugin()) {
        throw PluginError(options.plugin +
                          ": the plugin stays in the process, so it cannot be "
                          "loaded afresh");
    }
    StartPlugin();
}

bool Session::UnloadPlugin() {
    const bool gone = plugin == nullptr || plugin->Unload();
    plugin.reset();
    return gone;
}

PluginHost& Session::Plugin() {
    if (plugin == nullptr) {
        throw PluginError(options.plugin + ": the plugin is not loaded");
    }
    return *plugin;
}

void Session::LoadAircraft(const std::string& description) {
    const Dataref* dataref = simulator.Datarefs().Lookup(kAircraftDescription);
    if (dataref->Offers(xplmType_Data)) {
        simulator.Datarefs().SetBytes(kAircraftDescription, description);
    }
    simulator.Aircraft().TellLoaded();
}

void Session::UnloadAircraft() {
    simulator.Aircraft().TellUnloaded();
}

void Session::RunFrame(double seconds) {
    // After a frame that took long the aircraft flies on slower, as the simulator's does.
    flightModel->Advance(std::min(seconds, std::max(kLongestStep, 1.0 / options.framesPerSecond)));
    DatarefNumber(simulator.Datarefs().Lookup("sim/time/total_running_time_sec"))
        .Set(simulator.Clock().Now() + seconds);
    const auto before = std::chrono::steady_clock::now();
    simulator.RunFrame(seconds);
    statistics.Add(std::chrono::steady_clock::now() - before);
    if (simulator.Plugins().TakeReloadRequest()) {
        meetReloadRequest();
    }
}

// As the simulator does: a plugin that stays in the process starts with what it remembers.
void Session::meetReloadRequest() {
    if (!UnloadPlugin()) {
        simulator.Notices().Once(options.plugin +
                                 " stays in the process after it was unloaded, so its variables "
                                 "keep their values");
    }
    StartPlugin();
}

void Session::buildWorld() {
    if (!options.datarefsFile.empty()) {
        const DatarefsFile file = DatarefsFile::Read(options.datarefsFile);
        warnings = file.warnings;
        for (const DatarefDefinition& definition : file.definitions) {
            // The simulator's own list names some datarefs twice; the first one counts.
            if (simulator.Datarefs().Lookup(definition.name) == nullptr) {
                simulator.Datarefs().Define(definition);
            }
        }
    }
    if (!options.commandsFile.empty()) {
        for (const CommandDefinition& definition : readCommandsFile(options.commandsFile)) {
            simulator.Commands().Define(definition.name, definition.description);
        }
    }
    installDefaultWorld(simulator, worldVersion(options.world));
    simulator.Terrain().SetElevation(options.groundMetres);
    installCommandEffects(simulator);
}

} // namespace headless
