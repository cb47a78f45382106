// A stopwatch: a command starts and stops it, a menu does the same and resets it, and a dataref has
// the seconds. It stops while the simulator is paused.

#include <cstring>

#include "XPLMDataAccess.h"
#include "XPLMDefs.h"
#include "XPLMMenus.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

constexpr float kEveryFrame = -1.0F;

float seconds = 0.0F;
bool isRunning = false;
XPLMDataRef paused = nullptr;
XPLMMenuID menu = nullptr;
int toggleItem = 0;

float readSeconds(void* /*refcon*/) {
    return seconds;
}

void toggle() {
    isRunning = !isRunning;
    XPLMCheckMenuItem(menu, toggleItem, isRunning ? xplm_Menu_Checked : xplm_Menu_Unchecked);
    XPLMDebugString(isRunning ? "Stopwatch: started\n" : "Stopwatch: stopped\n");
}

int onCommand(XPLMCommandRef /*command*/, XPLMCommandPhase phase, void* /*refcon*/) {
    if (phase == xplm_CommandBegin) {
        toggle();
    }
    return 0;
}

void onMenu(void* /*menu*/, void* item) {
    if (item == &isRunning) {
        toggle();
    } else {
        seconds = 0.0F;
    }
}

float onFlightLoop(float sinceCall, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    if (isRunning && XPLMGetDatai(paused) == 0) {
        seconds += sinceCall;
    }
    return kEveryFrame;
}

void makeMenu() {
    const XPLMMenuID plugins = XPLMFindPluginsMenu();
    menu = XPLMCreateMenu("Stopwatch", plugins,
                          XPLMAppendMenuItem(plugins, "Stopwatch", nullptr, 0), &onMenu, nullptr);
    toggleItem = XPLMAppendMenuItem(menu, "Running", &isRunning, 0);
    XPLMAppendMenuItem(menu, "Reset", &seconds, 0);
}

} // namespace

PLUGIN_API int XPluginStart(char* name, char* signature, char* description) {
    std::strcpy(name, "Stopwatch");
    std::strcpy(signature, "orvane.examples.stopwatch");
    std::strcpy(description, "Counts seconds of flight.");
    paused = XPLMFindDataRef("sim/time/paused");
    XPLMRegisterDataAccessor("stopwatch/seconds", xplmType_Float, 0, nullptr, nullptr, &readSeconds,
                             nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr);
    XPLMRegisterCommandHandler(XPLMCreateCommand("stopwatch/toggle", "Starts or stops it."),
                               &onCommand, 1, nullptr);
    XPLMRegisterFlightLoopCallback(&onFlightLoop, kEveryFrame, nullptr);
    makeMenu();
    return 1;
}

PLUGIN_API void XPluginStop(void) {}

PLUGIN_API int XPluginEnable(void) {
    return 1;
}

PLUGIN_API void XPluginDisable(void) {}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int /*message*/, void* /*parameter*/) {
}
