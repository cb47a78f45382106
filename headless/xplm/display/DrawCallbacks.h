#pragma once

#include <cstddef>
#include <vector>

#include "XPLMDisplay.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// Callbacks for drawing. They are kept but never called, because nothing is drawn.
class DrawCallbacks final {
public:
    DrawCallbacks(PluginContext& pluginContext, CallRecorder& callRecorder)
        : context(pluginContext), recorder(callRecorder) {}
    DrawCallbacks(const DrawCallbacks&) = delete;
    DrawCallbacks& operator=(const DrawCallbacks&) = delete;

    // False without a callback.
    bool Register(XPLMDrawCallback_f callback, XPLMDrawingPhase phase, bool before, void* refcon);
    // False if it is not registered.
    bool Unregister(XPLMDrawCallback_f callback, XPLMDrawingPhase phase, bool before, void* refcon);
    std::size_t DropOf(XPLMPluginID plugin);

    std::size_t Count() const { return entries.size(); }

private:
    struct Entry {
        XPLMDrawCallback_f callback;
        XPLMDrawingPhase phase;
        bool before;
        void* refcon;
        XPLMPluginID owner;

        bool operator==(const Entry&) const = default;
    };

    PluginContext& context;
    CallRecorder& recorder;
    std::vector<Entry> entries;
};

} // namespace headless
