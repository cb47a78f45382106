#pragma once

// Flight loops: calls that the simulator makes to a plugin while it runs.

#include "XPLMDefs.h"

// Returns when to be called again: seconds if positive, flight loops if negative, 0 for never.
typedef float (*XPLMFlightLoop_f)(float inElapsedSinceLastCall,
                                  float inElapsedTimeSinceLastFlightLoop, int inCounter,
                                  void* inRefcon);

// `inInterval` counts like the callback's result. A callback is identified by function and refcon.
XPLM_API void XPLMRegisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, float inInterval,
                                             void* inRefcon);
XPLM_API void XPLMUnregisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, void* inRefcon);
