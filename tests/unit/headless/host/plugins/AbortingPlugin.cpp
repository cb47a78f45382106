// A plugin that writes a line to the log and ends the process in its first flight loop.

#include <cstdlib>
#include <cstring>

#include "XPLMDefs.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    XPLMDebugString("the last line\n");
    std::abort();
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Aborting");
    std::strcpy(outSignature, "headless.tests.aborting");
    std::strcpy(outDescription, "Ends the process.");
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    return 1;
}

PLUGIN_API void XPluginStop(void) {}
PLUGIN_API int XPluginEnable(void) {
    return 1;
}
PLUGIN_API void XPluginDisable(void) {}
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int /*message*/, void* /*param*/) {}
