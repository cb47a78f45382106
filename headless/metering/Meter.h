#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "headless/metering/PluginFigures.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// Measures what each plugin takes from the simulator's thread: time of the processor, calls of the
// SDK, allocations, memory, lines of the log. What the SDK's functions take counts for the plugin
// that called them; threads of its own are not measured.
//
// Observes the simulator as long as it lives, and borrows it. Measuring itself takes no memory but
// for each new plugin.
class Meter final : public IPluginObserver {
public:
    // The plugin's figures are those of the frame that just ran.
    using FrameObserver = std::function<void(const PluginFigures&)>;

    explicit Meter(Simulator& observedSimulator);
    ~Meter() override;
    Meter(const Meter&) = delete;
    Meter& operator=(const Meter&) = delete;

    // Is told of every plugin after every frame.
    void SetFrameObserver(FrameObserver frameObserver) { observer = std::move(frameObserver); }

    // In the order in which they were first called.
    const std::vector<std::unique_ptr<PluginFigures>>& Plugins() const { return plugins; }
    // Simulated seconds of the frames that were measured.
    double Seconds() const { return seconds; }
    // Of the process: when the first frame began.
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
    // By plugin id; null for those not seen yet.
    std::vector<PluginFigures*> byId;
    PluginFigures* running = nullptr;
    ThreadUsage runningSince;
    double seconds = 0.0;
    std::size_t residentAtFirst = 0;
};

} // namespace headless
