// A plugin that registers a flight loop before it is started, and uses its own dataref while it
// stops.

#include <cstring>
#include <string>

#include "XPLMDataAccess.h"
#include "XPLMDefs.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

int seven(void* /*refcon*/) {
    return 7;
}

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    XPLMDebugString("flight loop\n");
    return -1.0F;
}

struct Early {
    Early() { XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr); }
};

const Early early;

XPLMDataRef own = nullptr;

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Eager");
    std::strcpy(outSignature, "headless.tests.eager");
    std::strcpy(outDescription, "Registers early.");
    char path[256] = "";
    XPLMGetPluginInfo(XPLMGetMyID(), nullptr, path, nullptr, nullptr);
    XPLMDebugString((std::string("started from ") + path + "\n").c_str());
    own = XPLMRegisterDataAccessor("eager/own", xplmType_Int, 0, &seven, nullptr, nullptr, nullptr,
                                   nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                   nullptr, nullptr, nullptr);
    return 1;
}

PLUGIN_API void XPluginStop(void) {
    XPLMDebugString(("own is " + std::to_string(XPLMGetDatai(own)) + "\n").c_str());
}

PLUGIN_API int XPluginEnable(void) {
    return 1;
}

PLUGIN_API void XPluginDisable(void) {}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int message, void* /*param*/) {
    XPLMDebugString(("message " + std::to_string(message) + "\n").c_str());
}
