#pragma once

#include <memory>
#include <string>
#include <vector>

#include "headless/host/FrameStatistics.h"
#include "headless/host/PluginHost.h"
#include "headless/host/SessionOptions.h"
#include "headless/world/CommandEffects.h"
#include "headless/world/FlightModel.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// A simulator with its world, its aircraft and one plugin: all that a run consists of but the pace.
//
// The simulator is the current one for the session's life. Steps that the plugin refuses or that
// come at the wrong time throw PluginError; the session goes on after that.
class Session final {
public:
    static constexpr const char* kDefaultAircraft = "Orvane Trainer, light single";

    // Builds the world and opens the log. Throws TextFileError or std::runtime_error, one line
    // each, for files that cannot be read or written.
    explicit Session(const SessionOptions& sessionOptions);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    headless::Simulator& Simulator() { return simulator; }
    const FrameStatistics& Statistics() const { return statistics; }

    // What was wrong with the files, one line each.
    const std::vector<std::string>& Warnings() const { return warnings; }

    // Loads, starts and enables the plugin and tells it of the aircraft, airport and scenery.
    void StartPlugin();
    // Unloads it and does the same again.
    void ReloadPlugin();
    // Disables, stops and unloads. False when its library stays in the process all the same.
    bool UnloadPlugin();
    // The plugin, loaded. Throws PluginError when there is none.
    PluginHost& Plugin();

    // The description is what the plugin knows an aircraft by.
    void LoadAircraft(const std::string& description);
    void UnloadAircraft();

    // One frame of the usual length, or of so many seconds: the aircraft moves, then the plugin has
    // its turn. A plugin that asked for a reload gets it after that.
    void RunFrame() { RunFrame(1.0 / options.framesPerSecond); }
    void RunFrame(double seconds);

    bool IsPaused() const { return paused; }
    void SetPaused(bool pause) { paused = pause; }

private:
    void meetReloadRequest();
    void buildWorld();

    SessionOptions options;
    headless::Simulator simulator;
    std::unique_ptr<FlightModel> flightModel;
    std::unique_ptr<PluginHost> plugin;
    FrameStatistics statistics;
    bool paused;
    std::vector<std::string> warnings;
};

} // namespace headless
