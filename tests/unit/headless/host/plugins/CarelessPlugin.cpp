// A plugin that breaks one rule of the SDK, which HEADLESS_TEST_BREACH names; without a name none.

#include <cstdlib>
#include <cstring>
#include <thread>

#include "XPLMDataAccess.h"
#include "XPLMDefs.h"
#include "XPLMGraphics.h"
#include "XPLMMenus.h"
#include "XPLMProcessing.h"
#include "XPLMScenery.h"
#include "XPLMUtilities.h"

namespace {

bool breaks(const char* rule) {
    const char* const text = std::getenv("HEADLESS_TEST_BREACH");
    return text != nullptr && std::strcmp(text, rule) == 0;
}

struct Life {
    Life() {
        if (breaks("constructor")) {
            XPLMGetCycleNumber();
        }
    }
    ~Life() {
        if (breaks("destructor")) {
            XPLMGetCycleNumber();
        }
    }
};

const Life life;

XPLMDataRef counter = nullptr;

void useGoneHandles() {
    XPLMCreateFlightLoop_t parameters{sizeof parameters, xplm_FlightLoop_Phase_BeforeFlightModel,
                                      [](float, float, int, void*) { return 0.0F; }, nullptr};
    const XPLMFlightLoopID loop = XPLMCreateFlightLoop(&parameters);
    XPLMDestroyFlightLoop(loop);
    XPLMScheduleFlightLoop(loop, 1.0F, 1);
}

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    if (breaks("orphan")) {
        counter = counter == nullptr ? XPLMFindDataRef("fake/counter") : counter;
        XPLMGetDatai(counter);
    } else if (breaks("handle")) {
        useGoneHandles();
    } else if (breaks("null")) {
        XPLMCommandOnce(nullptr);
    } else if (breaks("null dataref")) {
        XPLMGetDatai(nullptr);
    } else if (breaks("drawing")) {
        XPLMDrawTranslucentDarkBox(0, 1, 1, 0);
    } else if (breaks("own loop")) {
        XPLMSetFlightLoopCallbackInterval(&onFlightLoop, -1.0F, 1, nullptr);
    } else if (breaks("thread")) {
        std::thread([] { XPLMGetCycleNumber(); }).join();
    }
    return -1.0F;
}

void leaveThingsBehind() {
    XPLMCreateProbe(xplm_ProbeY);
    XPLMCommandRef command = XPLMCreateCommand("careless/held", "Is held.");
    XPLMCommandBegin(command);
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Careless");
    std::strcpy(outSignature, "headless.tests.careless");
    std::strcpy(outDescription, "Breaks rules.");
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    if (breaks("left")) {
        leaveThingsBehind();
    } else if (breaks("menu")) {
        XPLMAppendMenuItem(XPLMFindPluginsMenu(), "Careless", nullptr, 0);
    }
    return 1;
}

PLUGIN_API void XPluginStop(void) {
    XPLMUnregisterFlightLoopCallback(&onFlightLoop, nullptr);
}

PLUGIN_API int XPluginEnable(void) {
    return 1;
}
PLUGIN_API void XPluginDisable(void) {}
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int /*message*/, void* /*param*/) {}
