#include "headless/host/Session.h"

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "headless/host/StopSignal.h"
#include "headless/xplm/planes/Aircraft.h"

namespace headless {

namespace {

// Seconds.
constexpr double kLongestStep = 0.05;

std::vector<PluginPlace> placesOf(const std::vector<std::string>& paths) {
    std::vector<PluginPlace> places(paths.size());
    std::transform(paths.begin(), paths.end(), places.begin(), &findPlugin);
    return places;
}

} // namespace

Session::Session(const SessionOptions& sessionOptions)
    : options(sessionOptions),
      world(simulator, sessionOptions.world),
      plugins(simulator, placesOf(sessionOptions.plugins), sessionOptions.strict),
      freezes(sessionOptions.freezes),
      paused(sessionOptions.paused) {
    simulator.Log().OpenFile(options.logFile);
    // The log file keeps every line; memory must not grow in a long run.
    simulator.Log().KeepInMemory(false);
    failures = std::make_unique<Failures>(simulator, plugins, options.failures);
}

void Session::StartPlugins() {
    plugins.Start();
    LoadAircraft(aircraft);
    simulator.Plugins().Broadcast(XPLM_MSG_AIRPORT_LOADED, nullptr);
    simulator.Plugins().Broadcast(XPLM_MSG_SCENERY_LOADED, nullptr);
}

// Only the reloaded plugin gets the messages; the others already had them.
void Session::ReloadPlugin(const std::string& name) {
    plugins.Reload(name).SendLoadedMessages();
}

void Session::LoadAircraft(const std::string& description) {
    aircraft = description;
    world.LoadAircraft(description);
}

void Session::UnloadAircraft() {
    simulator.Aircraft().AnnounceUnloaded();
}

void Session::RunFrame(double seconds) {
    // In a slow frame the aircraft advances less than the frame took, as in the simulator.
    world.Advance(seconds,
                  std::min(seconds, std::max(kLongestStep, 1.0 / options.framesPerSecond)));
    for (IFrameListener* listener : listeners) {
        listener->BeforeFrame(seconds);
    }
    const auto before = std::chrono::steady_clock::now();
    simulator.RunFrame(seconds);
    statistics.Add(std::chrono::steady_clock::now() - before);
    for (IFrameListener* listener : listeners) {
        listener->AfterFrame();
    }
    if (simulator.Plugins().TakeReloadRequest()) {
        reloadAllPlugins();
    }
    if (const double still = freezes.TakeDue(simulator.Clock().Now()); still > 0.0) {
        freeze(still);
    }
}

void Session::freeze(double seconds) {
    using Clock = std::chrono::steady_clock;
    simulator.Notices().Once("no frames for a while, as --freeze asks");
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (Clock::now() < end && !StopSignal::Received()) {
        // A signal ends the poll early.
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        ::poll(nullptr, 0, static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 1000)));
    }
    simulator.ReloadScenery();
}

void Session::SetFramesPerSecond(double rate) {
    secondsBeforeRate = FlownSeconds();
    framesBeforeRate = statistics.Frames();
    options.framesPerSecond = rate;
}

double Session::FlownSeconds() const {
    return secondsBeforeRate +
           static_cast<double>(statistics.Frames() - framesBeforeRate) / options.framesPerSecond;
}

// As in the simulator, a plugin that stays in the process keeps the values of its variables.
void Session::reloadAllPlugins() {
    for (const std::string& file : plugins.Unload()) {
        simulator.Notices().Once(file +
                                 " stays in the process after it was unloaded, so its variables "
                                 "keep their values");
    }
    StartPlugins();
}

} // namespace headless
