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

// What of one kind a plugin did not take back before it went.
struct Leftover {
    std::size_t count;
    const char* kind;
    // The function that takes it back.
    const char* function;
};

// Tells where plugins break the rules of the SDK: each breach once for each plugin and function, as
// a warning, or as a note when the SDK drops it anyway and so nobody is harmed.
class Contract final {
public:
    Contract(Notices& simulatorNotices, const PluginContext& pluginContext,
             const PluginRegistry& pluginRegistry)
        : notices(simulatorNotices), context(pluginContext), plugins(pluginRegistry) {}
    Contract(const Contract&) = delete;
    Contract& operator=(const Contract&) = delete;

    // Of the plugin that runs; nothing when it is the simulator.
    void Refused(const RefusedCall& refused);
    // Those that the simulator takes back with the plugin are a note.
    void LeftBehind(XPLMPluginID plugin, std::span<const Leftover> all, bool areTakenBack);

private:
    // Empty for the simulator and for what plays a plugin in a test.
    std::string fileOf(XPLMPluginID plugin) const;

    Notices& notices;
    const PluginContext& context;
    const PluginRegistry& plugins;
    // Calls may be refused on any thread.
    std::mutex mutex;
    std::set<std::tuple<XPLMPluginID, std::string, Refusal>> told;
    // By file: what is left at the first stop is told.
    std::set<std::pair<std::string, bool>> stopped;
};

} // namespace headless
