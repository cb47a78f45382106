#include "plugin/PluginCallbacks.h"

#include "plugin/ExceptionBarrier.h"
#include "plugin/PluginGlobals.h"
#include "plugin/XPlanePlugin.h"

namespace {

constexpr float kNextFlightLoop = -1.0F;
constexpr int kPassOn = 1;

} // namespace

float MyFlightLoopCallback(float elapsedSinceLastCall, float elapsedSinceLastFlightLoop,
                           int counter, void* refcon) {
    return withExceptionBarrier(kNextFlightLoop, [&] {
        return globalPlugin == nullptr
                   ? kNextFlightLoop
                   : globalPlugin->FlightLoop(elapsedSinceLastCall, elapsedSinceLastFlightLoop,
                                              counter, refcon);
    });
}

int MyCommandCallBack(XPLMCommandRef command, XPLMCommandPhase phase, void* refcon) {
    return withExceptionBarrier(kPassOn, [&] {
        return globalPlugin == nullptr ? kPassOn
                                       : globalPlugin->CommandHandler(command, phase, refcon);
    });
}
