#pragma once

#include "XPLMDefs.h"

namespace headless {

// Observes plugins, see Simulator::Observe(). Called on the simulator's thread; must neither throw
// nor call the SDK.
class IPluginObserver {
public:
    virtual ~IPluginObserver() = default;

    // Called before and after all that plugins do in a frame; `seconds` is the frame's length.
    virtual void FrameBegan() = 0;
    virtual void FrameEnded(double seconds) = 0;
    // A function of the SDK was called. Each function has its own text, which is never freed.
    virtual void Called(const char* function) = 0;
    // This plugin's code runs from now on; XPLM_PLUGIN_XPLANE is the simulator's own.
    virtual void Switched(XPLMPluginID plugin) = 0;
    // The text was written to the log for a plugin.
    virtual void Logged(const char* text) = 0;
};

} // namespace headless
