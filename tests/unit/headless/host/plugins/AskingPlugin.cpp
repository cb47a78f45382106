// A plugin that asks the simulator for things and says in the log what it got.

#include <cstring>
#include <string>

#include "XPLMDataAccess.h"
#include "XPLMDefs.h"
#include "XPLMMenus.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMScenery.h"
#include "XPLMUtilities.h"

namespace {

// A frame that took as long was held up.
constexpr float kLate = 0.3F;

template <class Answer>
void say(const std::string& question, Answer answer) {
    XPLMDebugString((question + " " + std::to_string(answer) + "\n").c_str());
}

void askOnce() {
    for (int i = 1; i <= 3; ++i) {
        say("dataref", XPLMFindDataRef("sim/time/paused") != nullptr ? 1 : 0);
    }
    say("plugin", XPLMFindPluginBySignature("headless.tests.asking"));
    say("menu item", XPLMAppendMenuItem(XPLMFindPluginsMenu(), "Asking", nullptr, 0));
    const XPLMProbeRef probe = XPLMCreateProbe(xplm_ProbeY);
    XPLMProbeInfo_t information{};
    information.structSize = sizeof information;
    say("probe", XPLMProbeTerrainXYZ(probe, 0.0F, 0.0F, 0.0F, &information));
    XPLMDestroyProbe(probe);
}

float onFlightLoop(float sinceCall, float /*sinceLoop*/, int frame, void* /*refcon*/) {
    if (frame == 1) {
        XPLMDebugString(XPLMGetElapsedTime() > 0.0F ? "time\n" : "no time\n");
    }
    if (sinceCall >= kLate) {
        XPLMDebugString("late\n");
    }
    return -1.0F;
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Asking");
    std::strcpy(outSignature, "headless.tests.asking");
    std::strcpy(outDescription, "Asks.");
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    return 1;
}

PLUGIN_API void XPluginStop(void) {}

PLUGIN_API int XPluginEnable(void) {
    askOnce();
    return 1;
}

PLUGIN_API void XPluginDisable(void) {}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int message, void* /*param*/) {
    if (message == XPLM_MSG_SCENERY_LOADED) {
        XPLMDebugString("scenery\n");
    }
}
