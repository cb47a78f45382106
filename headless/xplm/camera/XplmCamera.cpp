#include "XPLMCamera.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/camera/Camera.h"

using headless::give;
using headless::here;

void XPLMControlCamera(XPLMCameraControlDuration inHowLong, XPLMCameraControl_f inControlFunc,
                       void* inRefcon) {
    here().Camera().Control(inHowLong, inControlFunc, inRefcon);
}

void XPLMDontControlCamera(void) {
    here().Camera().Release();
}

int XPLMIsCameraBeingControlled(XPLMCameraControlDuration* outCameraControlDuration) {
    const XPLMCameraControlDuration duration = here().Camera().Duration();
    give(outCameraControlDuration, duration);
    return duration == 0 ? 0 : 1;
}

void XPLMReadCameraPosition(XPLMCameraPosition_t* outCameraPosition) {
    give(outCameraPosition, here().Camera().Position());
}
