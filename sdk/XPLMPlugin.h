#pragma once

// Messages between the simulator and its plugins, and from plugin to plugin.

#include "XPLMDefs.h"

// Messages from the simulator. For those about a plane the parameter is the plane's index,
// 0 being the user's.
#define XPLM_MSG_PLANE_CRASHED 101
#define XPLM_MSG_PLANE_LOADED 102
#define XPLM_MSG_AIRPORT_LOADED 103
#define XPLM_MSG_SCENERY_LOADED 104
#define XPLM_MSG_AIRPLANE_COUNT_CHANGED 105
#define XPLM_MSG_PLANE_UNLOADED 106
#define XPLM_MSG_WILL_WRITE_PREFS 107
#define XPLM_MSG_LIVERY_LOADED 108

// Returns XPLM_NO_PLUGIN_ID when no loaded plugin has the signature.
XPLM_API XPLMPluginID XPLMFindPluginBySignature(const char* inSignature);
XPLM_API void XPLMSendMessageToPlugin(XPLMPluginID inPlugin, int inMessage, void* inParam);
