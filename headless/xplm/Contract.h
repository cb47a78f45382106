#pragma once

#include <mutex>
#include <set>
#include <span>
#include <string>
#include <tuple>
#include <utility>

#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/Notices.h"
#include "headless/xplm/plugin/PluginRegistry.h"

namespace headless {

// What a plugin had not released of one kind when it stopped.
struct Leftover {
    std::size_t count;
    const char* kind;
    // The function that releases it.
    const char* function;
};

// Reports where plugins break the SDK's rules, each breach once per plugin and function: as a
// warning, or as a note if the SDK drops the call anyway and no harm is done.
class Contract final {
public:
    Contract(Notices& simulatorNotices, const PluginContext& pluginContext,
             const PluginRegistry& pluginRegistry)
        : notices(simulatorNotices), context(pluginContext), plugins(pluginRegistry) {}
    Contract(const Contract&) = delete;
    Contract& operator=(const Contract&) = delete;

    // A refusal of the running plugin; ignored if that is the simulator.
    void Refused(const RefusedCall& refused);
    // A note if the simulator releases them with the plugin, otherwise a warning.
    void LeftBehind(XPLMPluginID plugin, std::span<const Leftover> all, bool areTakenBack);

private:
    // Empty for the simulator and for a test that plays a plugin.
    std::string fileOf(XPLMPluginID plugin) const;

    Notices& notices;
    const PluginContext& context;
    const PluginRegistry& plugins;
    // Calls may be refused on any thread.
    std::mutex mutex;
    std::set<std::tuple<XPLMPluginID, std::string, Refusal>> reported;
    // By file: only what is left at the first stop is reported.
    std::set<std::pair<std::string, bool>> stopped;
};

} // namespace headless
