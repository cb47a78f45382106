// A plugin that watches others: it shows what it reads through handles that it keeps, greets
// everybody when it is enabled, and leaves all that it registered behind.

#include <cstring>
#include <string>

#include "XPLMDataAccess.h"
#include "XPLMDefs.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

constexpr int kGreeting = 0x02000000;

struct Watched {
    const char* name;
    const char* shownAs;
    XPLMDataRef handle;
};

Watched watched[] = {{"fake/counter", "neighbour/fake_counter", nullptr},
                     {"kyr/autopilot_trigger_disable", "neighbour/trigger", nullptr}};

int readWatched(void* refcon) {
    const XPLMDataRef handle = static_cast<Watched*>(refcon)->handle;
    return handle != nullptr && XPLMIsDataRefGood(handle) != 0 ? XPLMGetDatai(handle) : -1;
}

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    for (Watched& one : watched) {
        if (one.handle == nullptr) {
            one.handle = XPLMFindDataRef(one.name);
        }
    }
    return -1.0F;
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Neighbour");
    std::strcpy(outSignature, "headless.tests.neighbour");
    std::strcpy(outDescription, "Watches others.");
    for (Watched& one : watched) {
        XPLMRegisterDataAccessor(one.shownAs, xplmType_Int, 0, &readWatched, nullptr, nullptr,
                                 nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                 nullptr, nullptr, &one, nullptr);
    }
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    XPLMDebugString("neighbour: start\n");
    return 1;
}

PLUGIN_API void XPluginStop(void) {
    XPLMDebugString("neighbour: stop\n");
}

PLUGIN_API int XPluginEnable(void) {
    XPLMDebugString("neighbour: enable\n");
    XPLMSendMessageToPlugin(XPLM_NO_PLUGIN_ID, kGreeting, nullptr);
    return 1;
}

PLUGIN_API void XPluginDisable(void) {
    XPLMDebugString("neighbour: disable\n");
}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID from, int message, void* /*param*/) {
    if (message != kGreeting && from != XPLM_PLUGIN_XPLANE) {
        XPLMDebugString(("neighbour: message " + std::to_string(message) + " from " +
                         std::to_string(from) + "\n")
                            .c_str());
    }
}
