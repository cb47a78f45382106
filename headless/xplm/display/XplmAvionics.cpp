// The avionics of XPLMDisplay.h.

#include "XPLMDisplay.h"
#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/display/Avionics.h"

using headless::AvionicsDevice;
using headless::give;
using headless::giveGeometry;
using headless::here;
using headless::takeGeometry;

XPLMAvionicsID XPLMRegisterAvionicsCallbacksEx(XPLMCustomizeAvionics_t* inParams) {
    headless::Simulator& simulator = here();
    if (!headless::isGiven(inParams, "parameters")) {
        return nullptr;
    }
    return simulator.Avionics().HandleOf(headless::takeStructure(*inParams).deviceId);
}

XPLMAvionicsID XPLMGetAvionicsHandle(XPLMDeviceID inDeviceID) {
    return here().Avionics().HandleOf(inDeviceID);
}

void XPLMUnregisterAvionicsCallbacks(XPLMAvionicsID inAvionicsId) {
    here().Avionics().Remove(inAvionicsId);
}

XPLMAvionicsID XPLMCreateAvionicsEx(XPLMCreateAvionics_t* inParams) {
    headless::Simulator& simulator = here();
    if (!headless::isGiven(inParams, "parameters")) {
        return nullptr;
    }
    const XPLMCreateAvionics_t parameters = headless::takeStructure(*inParams);
    AvionicsDevice device;
    device.own = true;
    device.id = parameters.deviceID == nullptr ? "" : parameters.deviceID;
    device.name = parameters.deviceName == nullptr ? "" : parameters.deviceName;
    device.geometry = {0, parameters.bezelHeight, parameters.bezelWidth, 0};
    return simulator.Avionics().Add(device);
}

void XPLMDestroyAvionics(XPLMAvionicsID inHandle) {
    here().Avionics().Remove(inHandle);
}

// There is no cockpit to bind a device to.
int XPLMIsAvionicsBound(XPLMAvionicsID inHandle) {
    here().Avionics().Resolve(inHandle);
    return 0;
}

void XPLMSetAvionicsBrightnessRheo(XPLMAvionicsID inHandle, float brightness) {
    if (AvionicsDevice* device = here().Avionics().Resolve(inHandle)) {
        device->brightness = brightness;
    }
}

float XPLMGetAvionicsBrightnessRheo(XPLMAvionicsID inHandle) {
    const AvionicsDevice* const device = here().Avionics().Resolve(inHandle);
    return device == nullptr ? 0.0F : device->brightness;
}

float XPLMGetAvionicsBusVoltsRatio(XPLMAvionicsID inHandle) {
    return here().Avionics().Resolve(inHandle) == nullptr ? 0.0F : 1.0F;
}

int XPLMIsCursorOverAvionics(XPLMAvionicsID inHandle, int* outX, int* outY) {
    here().Avionics().Resolve(inHandle);
    give(outX, 0);
    give(outY, 0);
    return 0;
}

void XPLMAvionicsNeedsDrawing(XPLMAvionicsID inHandle) {
    here().Avionics().Resolve(inHandle);
}

void XPLMSetAvionicsPopupVisible(XPLMAvionicsID inHandle, int inVisible) {
    if (AvionicsDevice* device = here().Avionics().Resolve(inHandle)) {
        device->popupVisible = inVisible != 0;
    }
}

int XPLMIsAvionicsPopupVisible(XPLMAvionicsID inHandle) {
    const AvionicsDevice* const device = here().Avionics().Resolve(inHandle);
    return device != nullptr && device->popupVisible ? 1 : 0;
}

void XPLMPopOutAvionics(XPLMAvionicsID inHandle) {
    if (AvionicsDevice* device = here().Avionics().Resolve(inHandle)) {
        device->poppedOut = true;
    }
}

int XPLMIsAvionicsPoppedOut(XPLMAvionicsID inHandle) {
    const AvionicsDevice* const device = here().Avionics().Resolve(inHandle);
    return device != nullptr && device->poppedOut ? 1 : 0;
}

void XPLMTakeAvionicsKeyboardFocus(XPLMAvionicsID inHandle) {
    here().Avionics().TakeFocus(inHandle);
}

int XPLMHasAvionicsKeyboardFocus(XPLMAvionicsID inHandle) {
    return here().Avionics().HasFocus(inHandle) ? 1 : 0;
}

void XPLMGetAvionicsGeometry(XPLMAvionicsID inHandle, int* outLeft, int* outTop, int* outRight,
                             int* outBottom) {
    giveGeometry(here().Avionics().Resolve(inHandle), outLeft, outTop, outRight, outBottom);
}

void XPLMSetAvionicsGeometry(XPLMAvionicsID inHandle, int inLeft, int inTop, int inRight,
                             int inBottom) {
    takeGeometry(here().Avionics().Resolve(inHandle), {inLeft, inTop, inRight, inBottom});
}

void XPLMGetAvionicsGeometryOS(XPLMAvionicsID inHandle, int* outLeft, int* outTop, int* outRight,
                               int* outBottom) {
    giveGeometry(here().Avionics().Resolve(inHandle), outLeft, outTop, outRight, outBottom);
}

void XPLMSetAvionicsGeometryOS(XPLMAvionicsID inHandle, int inLeft, int inTop, int inRight,
                               int inBottom) {
    takeGeometry(here().Avionics().Resolve(inHandle), {inLeft, inTop, inRight, inBottom});
}
