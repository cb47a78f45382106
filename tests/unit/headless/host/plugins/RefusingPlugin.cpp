// A plugin that registers a flight loop and then does not want to start.

#include "XPLMDefs.h"
#include "XPLMProcessing.h"

namespace {

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    return -1.0F;
}

} // namespace

PLUGIN_API int XPluginStart(char* /*outName*/, char* /*outSignature*/, char* /*outDescription*/) {
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    return 0;
}

PLUGIN_API void XPluginStop(void) {}
PLUGIN_API int XPluginEnable(void) {
    return 1;
}
PLUGIN_API void XPluginDisable(void) {}
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int /*message*/, void* /*param*/) {}
