#pragma once

#include <array>
#include <set>
#include <string>
#include <utility>

#include "XPLMPlugin.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// The SDK's features, which each plugin enables for itself. All are off at first.
class Features final {
public:
    static constexpr const char* kDatarefNotifications = "XPLM_WANTS_DATAREF_NOTIFICATIONS";
    static constexpr std::array<const char*, 4> kNames{
        "XPLM_WANTS_REFLECTIONS", "XPLM_USE_NATIVE_PATHS", "XPLM_USE_NATIVE_WIDGET_WINDOWS",
        kDatarefNotifications};

    Features(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), recorder(callRecorder) {}
    Features(const Features&) = delete;
    Features& operator=(const Features&) = delete;

    bool Has(const char* feature);
    // For the calling plugin.
    bool IsEnabled(const char* feature) { return IsEnabledFor(context.Plugin(), feature); }
    void Enable(const char* feature, bool enable);
    static void Enumerate(XPLMFeatureEnumerator_f enumerator, void* reference);

    bool IsEnabledFor(XPLMPluginID plugin, const char* feature);
    void DropOf(XPLMPluginID plugin);

private:
    PluginContext& context;
    CallRecorder& recorder;
    std::set<std::pair<XPLMPluginID, std::string>> enabled;
};

} // namespace headless
