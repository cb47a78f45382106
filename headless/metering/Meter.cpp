#include "headless/metering/Meter.h"

#include <algorithm>
#include <string_view>

#include "headless/metering/ProcessInfo.h"

namespace headless {

Meter::Meter(Simulator& observedSimulator) : simulator(observedSimulator) {
    simulator.Observe(this);
}

Meter::~Meter() {
    simulator.Observe(nullptr);
}

void Meter::Called(const char* function) {
    if (running != nullptr) {
        running->calls.Add(function);
    }
}

void Meter::Switched(XPLMPluginID plugin) {
    PluginFigures* const next = figuresOf(plugin);
    if (next == running) {
        return;
    }
    if (running != nullptr) {
        running->usage += ThreadUsage::AtEnd() - runningSince;
    }
    running = next;
    if (running != nullptr) {
        runningSince = ThreadUsage::AtBegin();
    }
}

void Meter::Logged(const char* text) {
    if (running != nullptr) {
        const std::string_view lines = text;
        running->logLines +=
            static_cast<std::uint64_t>(std::count(lines.begin(), lines.end(), '\n'));
    }
}

void Meter::FrameBegan() {
    if (residentAtFirst == 0) {
        residentAtFirst = residentKilobytes();
    }
    for (const auto& plugin : plugins) {
        plugin->CountAsOutside();
    }
}

void Meter::FrameEnded(double frameSeconds) {
    seconds += frameSeconds;
    for (const auto& plugin : plugins) {
        if (observer) {
            observer(*plugin);
        }
        plugin->CountAsFrame();
    }
}

PluginFigures* Meter::figuresOf(XPLMPluginID plugin) {
    if (plugin <= XPLM_PLUGIN_XPLANE) {
        return nullptr;
    }
    const auto index = static_cast<std::size_t>(plugin);
    const bool isKnown = index < byId.size() && byId[index] != nullptr;
    return isKnown ? byId[index] : enroll(plugin);
}

PluginFigures* Meter::enroll(XPLMPluginID plugin) {
    const PluginTexts* const texts = simulator.Plugins().TextsOf(plugin);
    const std::string file = texts == nullptr ? "plugin " + std::to_string(plugin) : texts->path;
    auto known = std::find_if(plugins.begin(), plugins.end(),
                              [&](const auto& one) { return one->file == file; });
    if (known == plugins.end()) {
        plugins.push_back(std::make_unique<PluginFigures>());
        plugins.back()->file = file;
        known = std::prev(plugins.end());
    }
    byId.resize(std::max(byId.size(), static_cast<std::size_t>(plugin) + 1));
    byId[static_cast<std::size_t>(plugin)] = known->get();
    return known->get();
}

} // namespace headless
