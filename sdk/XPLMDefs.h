#pragma once

// The simulator's plugin SDK as far as this project calls it: basic types and linkage.
//
// These headers carry the SDK's own file names and exact C signatures, so that the same sources
// build against the simulator vendor's headers as well (see XPLANE_SDK_DIR in the build).
// None of the functions is implemented here: the simulator provides them to a loaded plugin.

#define XPLM_API extern "C" __attribute__((visibility("default")))
#define PLUGIN_API extern "C" __attribute__((visibility("default")))

// Identifies a loaded plugin for as long as it stays loaded.
typedef int XPLMPluginID;

// The result of a plugin look-up that found nothing.
#define XPLM_NO_PLUGIN_ID (-1)

// The simulator itself, as the sender of a message.
#define XPLM_PLUGIN_XPLANE (0)
