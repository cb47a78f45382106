#pragma once

// The entry points of a plugin that only starts; for one source of each plugin.

#include "XPLMDefs.h"

PLUGIN_API void XPluginStop(void) {}
PLUGIN_API int XPluginEnable(void) {
    return 1;
}
PLUGIN_API void XPluginDisable(void) {}
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int /*message*/, void* /*param*/) {}
