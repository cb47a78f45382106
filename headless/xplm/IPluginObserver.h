#pragma once

#include "XPLMDefs.h"

namespace headless {

// Sees plugins at work, see Simulator::Observe(). Called on the simulator's thread; it must neither
// throw nor call the SDK.
class IPluginObserver {
public:
    virtual ~IPluginObserver() = default;

    // Around all that plugins do in a frame of so many seconds.
    virtual void FrameBegan() = 0;
    virtual void FrameEnded(double seconds) = 0;
    // A function of the SDK was called. The text lives with the process; each function has one of
    // its own.
    virtual void Called(const char* function) = 0;
    // From now on this plugin's code runs; the simulator's own is XPLM_PLUGIN_XPLANE.
    virtual void Switched(XPLMPluginID plugin) = 0;
    // The text was written to the log for a plugin.
    virtual void Logged(const char* text) = 0;
};

} // namespace headless
