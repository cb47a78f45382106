#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "headless/metering/PluginFigures.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// Measures what each plugin uses on the simulator's thread: CPU time, calls of the SDK,
// allocations, memory, lines of the log. What the SDK's functions use is charged to the plugin that
// called them. The plugin's own threads are not measured.
//
// Observes the simulator for its whole life, and borrows it. Measuring allocates memory only for
// each new plugin.
class Meter final : public IPluginObserver {
public:
    // The figures are those of the plugin's frame that just ran.
    using FrameObserver = std::function<void(const PluginFigures&)>;

    explicit Meter(Simulator& observedSimulator);
    ~Meter() override;
    Meter(const Meter&) = delete;
    Meter& operator=(const Meter&) = delete;

    // The observer is called for every plugin after every frame.
    void SetFrameObserver(FrameObserver frameObserver) { observer = std::move(frameObserver); }

    // In the order in which they were first called.
    const std::vector<std::unique_ptr<PluginFigures>>& Plugins() const { return plugins; }
    // Simulated seconds of the measured frames.
    double Seconds() const { return seconds; }
    // The process's resident memory when the first frame began.
    std::size_t ResidentKilobytesAtFirst() const { return residentAtFirst; }

    void Called(const char* function) override;
    void Switched(XPLMPluginID plugin) override;
    void Logged(const char* text) override;
    void FrameBegan() override;
    void FrameEnded(double frameSeconds) override;

private:
    // Null for the simulator itself.
    PluginFigures* figuresOf(XPLMPluginID plugin);
    PluginFigures* enroll(XPLMPluginID plugin);

    Simulator& simulator;
    FrameObserver observer;
    std::vector<std::unique_ptr<PluginFigures>> plugins;
    // By plugin id; null for plugins not seen yet.
    std::vector<PluginFigures*> byId;
    PluginFigures* running = nullptr;
    ThreadUsage runningSince;
    double seconds = 0.0;
    std::size_t residentAtFirst = 0;
};

} // namespace headless
