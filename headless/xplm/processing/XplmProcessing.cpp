#include "XPLMProcessing.h"

#include "headless/xplm/Here.h"

using headless::here;

float XPLMGetElapsedTime(void) {
    return static_cast<float>(here().Clock().Elapsed());
}

int XPLMGetCycleNumber(void) {
    return static_cast<int>(here().Clock().Frame());
}

void XPLMRegisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, float inInterval,
                                    void* inRefcon) {
    here().Loops().Register(inFlightLoop, inInterval, inRefcon);
}

void XPLMUnregisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, void* inRefcon) {
    here().Loops().Unregister(inFlightLoop, inRefcon);
}

void XPLMSetFlightLoopCallbackInterval(XPLMFlightLoop_f inFlightLoop, float inInterval,
                                       int inRelativeToNow, void* inRefcon) {
    here().Loops().SetInterval(inFlightLoop, inInterval, inRelativeToNow != 0, inRefcon);
}

XPLMFlightLoopID XPLMCreateFlightLoop(XPLMCreateFlightLoop_t* inParams) {
    return here().Loops().Create(inParams);
}

void XPLMDestroyFlightLoop(XPLMFlightLoopID inFlightLoopID) {
    here().Loops().Destroy(inFlightLoopID);
}

void XPLMScheduleFlightLoop(XPLMFlightLoopID inFlightLoopID, float inInterval,
                            int inRelativeToNow) {
    here().Loops().Schedule(inFlightLoopID, inInterval, inRelativeToNow != 0);
}
