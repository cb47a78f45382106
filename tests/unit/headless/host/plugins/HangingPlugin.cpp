// A plugin that does not return from its flight loop, after a line in the log.

#include <cstring>

#include "QuietEntryPoints.h"
#include "XPLMDefs.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    XPLMDebugString("message: it hangs\n");
    const volatile bool hangs = true;
    while (hangs) {
    }
    return 0.0F;
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Hanging");
    std::strcpy(outSignature, "headless.tests.hanging");
    std::strcpy(outDescription, "Never comes back.");
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    return 1;
}
