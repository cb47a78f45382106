#pragma once

#include "XPLMDisplay.h"
#include "headless/xplm/CallbackList.h"

namespace headless {

// A callback for drawing. It is kept but never called, because nothing is drawn.
struct DrawCallback {
    XPLMDrawCallback_f callback;
    XPLMDrawingPhase phase;
    bool before;
    void* refcon;
    XPLMPluginID owner = XPLM_PLUGIN_XPLANE;

    bool operator==(const DrawCallback&) const = default;
};

using DrawCallbacks = CallbackList<DrawCallback>;

} // namespace headless
