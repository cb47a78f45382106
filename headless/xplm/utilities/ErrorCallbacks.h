#pragma once

#include <map>

#include "XPLMUtilities.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// Reports refused calls to the plugins that set an error callback.
class ErrorCallbacks final {
public:
    ErrorCallbacks(PluginContext& pluginContext, CallRecorder& callRecorder);
    ErrorCallbacks(const ErrorCallbacks&) = delete;
    ErrorCallbacks& operator=(const ErrorCallbacks&) = delete;

    // For the calling plugin; null for none.
    void Set(XPLMError_f callback) { callbacks[context.Plugin()] = callback; }
    void DropOf(XPLMPluginID plugin) { callbacks.erase(plugin); }

private:
    void report(const RefusedCall& refused);

    PluginContext& context;
    std::map<XPLMPluginID, XPLMError_f> callbacks;
    bool isReporting = false;
};

} // namespace headless
