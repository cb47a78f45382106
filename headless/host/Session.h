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

// A simulator with its world, its aircraft and its plugins: everything in a run except the pace.
//
// The simulator is the current one for the session's life. Steps that a plugin refuses or that are
// out of order throw PluginError; the session continues after that.
class Session final {
public:
    static constexpr const char* kDefaultAircraft = "Orvane Trainer, light single";

    // Builds the world and opens the log. Throws TextFileError or std::runtime_error, each with one
    // line, for files that cannot be read or written.
    explicit Session(const SessionOptions& sessionOptions);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    headless::Simulator& Simulator() { return simulator; }
    const FrameStatistics& Statistics() const { return statistics; }

    // Problems in the files, one line each.
    const std::vector<std::string>& Warnings() const { return world.Warnings(); }

    // Loads, starts and enables the plugins and sends the aircraft, airport and scenery messages.
    void StartPlugins();
    // Unloads one plugin and does the same with it. An empty name means the only plugin.
    void ReloadPlugin(const std::string& name = {});
    // Disables, stops and unloads. Returns the files of those that stay in the process.
    std::vector<std::string> UnloadPlugins() { return plugins.Unload(); }
    LoadedPlugins& Plugins() { return plugins; }
    // A loaded plugin by name. Throws PluginError if there is no such plugin.
    PluginHost& Plugin(const std::string& name = {}) { return plugins.Find(name); }

    // Plugins identify an aircraft by its description.
    void LoadAircraft(const std::string& description);
    void UnloadAircraft();

    // Runs one frame of the usual length, or of the given seconds: the aircraft moves, then the
    // plugins run. A reload that a plugin asked for comes after that.
    void RunFrame() { RunFrame(1.0 / options.framesPerSecond); }
    void RunFrame(double seconds);

    bool IsPaused() const { return paused; }
    void SetPaused(bool pause) { paused = pause; }

    double FramesPerSecond() const { return options.framesPerSecond; }
    void SetFramesPerSecond(double rate);
    // The time that the frames so far would have taken without delays.
    double FlownSeconds() const;

    // The flight model that moves the aircraft.
    FlightModel& Model() { return world.Model(); }
    // Calls the listener for all frames from now on; it must outlive the session's frames.
    void AddListener(IFrameListener& listener) { listeners.push_back(&listener); }

    const std::string& LogFile() const { return options.logFile; }

private:
    void reloadAllPlugins();
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
    // The values at the last change of the rate.
    double secondsBeforeRate = 0.0;
    std::int64_t framesBeforeRate = 0;
};

} // namespace headless
