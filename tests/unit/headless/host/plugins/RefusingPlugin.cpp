// A plugin that registers a flight loop and then does not want to start.

#include "QuietEntryPoints.h"
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
