#pragma once

// The camera outside of the cockpit.

#include "XPLMDefs.h"

typedef int XPLMCameraControlDuration;

enum { xplm_ControlCameraUntilViewChanges = 1, xplm_ControlCameraForever = 2 };

// Local coordinates, degrees; 1 is no zoom.
typedef struct {
    float x;
    float y;
    float z;
    float pitch;
    float heading;
    float roll;
    float zoom;
} XPLMCameraPosition_t;

// 0 gives the camera back. The position is null when control was lost.
typedef int (*XPLMCameraControl_f)(XPLMCameraPosition_t* outCameraPosition, int inIsLosingControl,
                                   void* inRefcon);

XPLM_API void XPLMControlCamera(XPLMCameraControlDuration inHowLong,
                                XPLMCameraControl_f inControlFunc, void* inRefcon);
XPLM_API void XPLMDontControlCamera(void);
XPLM_API int XPLMIsCameraBeingControlled(XPLMCameraControlDuration* outCameraControlDuration);
XPLM_API void XPLMReadCameraPosition(XPLMCameraPosition_t* outCameraPosition);
