// A library that lacks one of the entry points.

#include "XPLMDefs.h"

PLUGIN_API int XPluginStart(char* /*outName*/, char* /*outSignature*/, char* /*outDescription*/) {
    return 1;
}

PLUGIN_API void XPluginStop(void) {}
PLUGIN_API int XPluginEnable(void) {
    return 1;
}
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int /*message*/, void* /*param*/) {}
