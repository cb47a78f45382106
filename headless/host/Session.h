#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "headless/host/Failures.h"
#include "headless/host/FrameStatistics.h"
#include "headless/host/Freezes.h"
#include "headless/host/IFrameListener.h"
#include "headless/host/LoadedPlugins.h"
#include "headless/host/SessionOptions.h"
#include "headless/world/World.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// A simulator with its world, its aircraft and its plugins: all that a run consists of but the
// pace.
//
// The simulator is the current one for the session's life. Steps that a plugin refuses or that
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
    const std::vector<std::string>& Warnings() const { return world.Warnings(); }

    // Loads, starts and enables the plugins and tells them of the aircraft, airport and scenery.
    void StartPlugins();
    // Unloads one and does the same again. An empty name is the only plugin.
    void ReloadPlugin(const std::string& name = {});
    // Disables, stops and unloads. Returns the files of those that stay in the process.
    std::vector<std::string> UnloadPlugins() { return plugins.Unload(); }
    LoadedPlugins& Plugins() { return plugins; }
    // One of them, loaded. Throws PluginError when there is none of the name.
    PluginHost& Plugin(const std::string& name = {}) { return plugins.Find(name); }

    // The description is what the plugin knows an aircraft by.
    void LoadAircraft(const std::string& description);
    void UnloadAircraft();

    // One frame of the usual length, or of so many seconds: the aircraft moves, then the plugins
    // have their turn. A reload that one of them asked for comes after that.
    void RunFrame() { RunFrame(1.0 / options.framesPerSecond); }
    void RunFrame(double seconds);

    bool IsPaused() const { return paused; }
    void SetPaused(bool pause) { paused = pause; }

    double FramesPerSecond() const { return options.framesPerSecond; }
    void SetFramesPerSecond(double rate);
    // What the frames so far would have taken had none of them been late.
    double FlownSeconds() const;

    // What moves the aircraft.
    FlightModel& Model() { return world.Model(); }
    // Is told of all frames from now on; the listener outlives the session's frames.
    void AddListener(IFrameListener& listener) { listeners.push_back(&listener); }

    const std::string& LogFile() const { return options.logFile; }

private:
    void meetReloadRequest();
    void freeze(double seconds);

    SessionOptions options;
    headless::Simulator simulator;
    World world;
    LoadedPlugins plugins;
    std::string aircraft = kDefaultAircraft;
    std::unique_ptr<Failures> failures;
    Freezes freezes;
    std::vector<IFrameListener*> listeners;
    FrameStatistics statistics;
    bool paused;
    // When the rate changed last.
    double secondsBeforeRate = 0.0;
    std::int64_t framesBeforeRate = 0;
};

} // namespace headless
