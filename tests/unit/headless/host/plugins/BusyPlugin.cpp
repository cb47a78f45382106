// A plugin that takes something of everything in each frame: two calls of one function of the SDK,
// a line of the log, three allocations; in every tenth frame two milliseconds of the processor.

#include <cstring>
#include <ctime>
#include <memory>

#include "XPLMDefs.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void burn(double seconds) {
    const double end = processorSeconds() + seconds;
    while (processorSeconds() < end) {
    }
}

// Of memory that the compiler cannot do without.
void allocate() {
    static std::unique_ptr<char[]> kept;
    kept.reset(new char[100]);
}

float onFlightLoop(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    static int frames = 0;
    XPLMGetElapsedTime();
    XPLMGetElapsedTime();
    XPLMDebugString("busy\n");
    for (int i = 0; i < 3; ++i) {
        allocate();
    }
    if (++frames % 10 == 0) {
        burn(0.002);
    }
    return -1.0F;
}

} // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "Busy");
    std::strcpy(outSignature, "headless.tests.busy");
    std::strcpy(outDescription, "A plugin for tests.");
    XPLMRegisterFlightLoopCallback(&onFlightLoop, -1.0F, nullptr);
    return 1;
}

PLUGIN_API void XPluginStop(void) {}

PLUGIN_API int XPluginEnable(void) {
    return 1;
}

PLUGIN_API void XPluginDisable(void) {}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID /*from*/, int /*message*/, void* /*parameter*/) {
}
