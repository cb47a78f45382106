#pragma once

// Flight loops: calls that the simulator makes to a plugin while it runs.

#include "XPLMDefs.h"

// Wall-clock seconds since the simulator started; they go on while it is paused.
XPLM_API float XPLMGetElapsedTime(void);
XPLM_API int XPLMGetCycleNumber(void);

// Returns when to be called again: seconds if positive, flight loops if negative, 0 for never.
typedef float (*XPLMFlightLoop_f)(float inElapsedSinceLastCall,
                                  float inElapsedTimeSinceLastFlightLoop, int inCounter,
                                  void* inRefcon);

// `inInterval` counts like the callback's result. A callback is identified by function and refcon.
XPLM_API void XPLMRegisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, float inInterval,
                                             void* inRefcon);
XPLM_API void XPLMUnregisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, void* inRefcon);
// Relative to now, or (0) to the last call.
XPLM_API void XPLMSetFlightLoopCallbackInterval(XPLMFlightLoop_f inFlightLoop, float inInterval,
                                                int inRelativeToNow, void* inRefcon);

typedef int XPLMFlightLoopPhaseType;

enum { xplm_FlightLoop_Phase_BeforeFlightModel = 0, xplm_FlightLoop_Phase_AfterFlightModel = 1 };

typedef void* XPLMFlightLoopID;

typedef struct {
    int structSize;
    XPLMFlightLoopPhaseType phase;
    XPLMFlightLoop_f callbackFunc;
    void* refcon;
} XPLMCreateFlightLoop_t;

// The new flight loop is not called before it is scheduled.
XPLM_API XPLMFlightLoopID XPLMCreateFlightLoop(XPLMCreateFlightLoop_t* inParams);
XPLM_API void XPLMDestroyFlightLoop(XPLMFlightLoopID inFlightLoopID);
XPLM_API void XPLMScheduleFlightLoop(XPLMFlightLoopID inFlightLoopID, float inInterval,
                                     int inRelativeToNow);
