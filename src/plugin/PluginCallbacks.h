#pragma once

#include "XPLMUtilities.h"

// The plain callbacks that the simulator is given. Without a plugin object they do nothing and let
// the simulator go on.

float MyFlightLoopCallback(float elapsedSinceLastCall, float elapsedSinceLastFlightLoop,
                           int counter, void* refcon);

int MyCommandCallBack(XPLMCommandRef command, XPLMCommandPhase phase, void* refcon);
