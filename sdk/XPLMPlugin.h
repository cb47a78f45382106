#pragma once

// Plugins: the loaded ones, enabling and disabling, messages, and features of the SDK.

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
#define XPLM_MSG_ENTERED_VR 109
#define XPLM_MSG_EXITING_VR 110
// Another plugin wants the planes.
#define XPLM_MSG_RELEASE_PLANES 111
#define XPLM_MSG_FMOD_BANK_LOADED 112
#define XPLM_MSG_FMOD_BANK_UNLOADING 113
// The parameter is the number of datarefs; sent to plugins that asked for it by a feature.
#define XPLM_MSG_DATAREFS_ADDED 114

// The plugin that calls.
XPLM_API XPLMPluginID XPLMGetMyID(void);
// 256 characters each; null if not needed.
XPLM_API void XPLMGetPluginInfo(XPLMPluginID inPlugin, char* outName, char* outFilePath,
                                char* outSignature, char* outDescription);
XPLM_API int XPLMCountPlugins(void);
XPLM_API XPLMPluginID XPLMGetNthPlugin(int inIndex);
XPLM_API XPLMPluginID XPLMFindPluginByPath(const char* inPath);

// Returns XPLM_NO_PLUGIN_ID when no loaded plugin has the signature.
XPLM_API XPLMPluginID XPLMFindPluginBySignature(const char* inSignature);
XPLM_API int XPLMIsPluginEnabled(XPLMPluginID inPluginID);
// 1 when the plugin is enabled now.
XPLM_API int XPLMEnablePlugin(XPLMPluginID inPluginID);
XPLM_API void XPLMDisablePlugin(XPLMPluginID inPluginID);
XPLM_API void XPLMReloadPlugins(void);
// XPLM_NO_PLUGIN_ID sends to all plugins. Only enabled ones receive.
XPLM_API void XPLMSendMessageToPlugin(XPLMPluginID inPlugin, int inMessage, void* inParam);

typedef void (*XPLMFeatureEnumerator_f)(const char* inFeature, void* inRef);

XPLM_API int XPLMHasFeature(const char* inFeature);
XPLM_API int XPLMIsFeatureEnabled(const char* inFeature);
XPLM_API void XPLMEnableFeature(const char* inFeature, int inEnable);
XPLM_API void XPLMEnumerateFeatures(XPLMFeatureEnumerator_f inEnumerator, void* inRef);
