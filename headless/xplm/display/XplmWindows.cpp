// The windows and screens of XPLMDisplay.h.

#include <cstddef>

#include "XPLMDisplay.h"
#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/display/Windows.h"

using headless::give;
using headless::giveGeometry;
using headless::giveRectangle;
using headless::here;
using headless::kScreen;
using headless::takeGeometry;
using headless::Window;

XPLMWindowID XPLMCreateWindowEx(XPLMCreateWindow_t* inParams) {
    headless::Simulator& simulator = here();
    if (!headless::isGiven(inParams, "parameters")) {
        return nullptr;
    }
    XPLMCreateWindow_t parameters = headless::takeStructure(*inParams);
    // Older structures end before these fields.
    const auto size = static_cast<std::size_t>(inParams->structSize);
    if (size <= offsetof(XPLMCreateWindow_t, layer)) {
        parameters.layer = xplm_WindowLayerFloatingWindows;
    }
    return simulator.Windows().Create(parameters);
}

XPLMWindowID XPLMCreateWindow(int inLeft, int inTop, int inRight, int inBottom, int inIsVisible,
                              XPLMDrawWindow_f inDrawCallback, XPLMHandleKey_f inKeyCallback,
                              XPLMHandleMouseClick_f inMouseCallback, void* inRefcon) {
    XPLMCreateWindow_t parameters{};
    parameters.structSize = sizeof parameters;
    parameters.left = inLeft;
    parameters.top = inTop;
    parameters.right = inRight;
    parameters.bottom = inBottom;
    parameters.visible = inIsVisible;
    parameters.drawWindowFunc = inDrawCallback;
    parameters.handleKeyFunc = inKeyCallback;
    parameters.handleMouseClickFunc = inMouseCallback;
    parameters.refcon = inRefcon;
    parameters.layer = xplm_WindowLayerFloatingWindows;
    return here().Windows().Create(parameters);
}

void XPLMDestroyWindow(XPLMWindowID inWindowID) {
    here().Windows().Destroy(inWindowID);
}

void XPLMGetScreenSize(int* outWidth, int* outHeight) {
    here();
    give(outWidth, kScreen.Width());
    give(outHeight, kScreen.Height());
}

void XPLMGetScreenBoundsGlobal(int* outLeft, int* outTop, int* outRight, int* outBottom) {
    here();
    giveRectangle(kScreen, outLeft, outTop, outRight, outBottom);
}

void XPLMGetAllMonitorBoundsGlobal(XPLMReceiveMonitorBoundsGlobal_f inMonitorBoundsCallback,
                                   void* inRefcon) {
    here();
    if (headless::isGiven(inMonitorBoundsCallback, "callback")) {
        inMonitorBoundsCallback(0, kScreen.left, kScreen.top, kScreen.right, kScreen.bottom,
                                inRefcon);
    }
}

void XPLMGetAllMonitorBoundsOS(XPLMReceiveMonitorBoundsOS_f inMonitorBoundsCallback,
                               void* inRefcon) {
    here();
    if (headless::isGiven(inMonitorBoundsCallback, "callback")) {
        inMonitorBoundsCallback(0, kScreen.left, kScreen.top, kScreen.right, kScreen.bottom,
                                inRefcon);
    }
}

void XPLMGetMouseLocation(int* outX, int* outY) {
    here();
    give(outX, headless::kMouseX);
    give(outY, headless::kMouseY);
}

void XPLMGetMouseLocationGlobal(int* outX, int* outY) {
    here();
    give(outX, headless::kMouseX);
    give(outY, headless::kMouseY);
}

void XPLMGetWindowGeometry(XPLMWindowID inWindowID, int* outLeft, int* outTop, int* outRight,
                           int* outBottom) {
    giveGeometry(here().Windows().Resolve(inWindowID), outLeft, outTop, outRight, outBottom);
}

void XPLMSetWindowGeometry(XPLMWindowID inWindowID, int inLeft, int inTop, int inRight,
                           int inBottom) {
    takeGeometry(here().Windows().Resolve(inWindowID), {inLeft, inTop, inRight, inBottom});
}

void XPLMGetWindowGeometryOS(XPLMWindowID inWindowID, int* outLeft, int* outTop, int* outRight,
                             int* outBottom) {
    giveGeometry(here().Windows().Resolve(inWindowID), outLeft, outTop, outRight, outBottom);
}

void XPLMSetWindowGeometryOS(XPLMWindowID inWindowID, int inLeft, int inTop, int inRight,
                             int inBottom) {
    takeGeometry(here().Windows().Resolve(inWindowID), {inLeft, inTop, inRight, inBottom});
}

void XPLMGetWindowGeometryVR(XPLMWindowID inWindowID, int* outWidthBoxels, int* outHeightBoxels) {
    const Window* const window = here().Windows().Resolve(inWindowID);
    give(outWidthBoxels, window == nullptr ? 0 : window->vrWidth);
    give(outHeightBoxels, window == nullptr ? 0 : window->vrHeight);
}

void XPLMSetWindowGeometryVR(XPLMWindowID inWindowID, int widthBoxels, int heightBoxels) {
    if (Window* window = here().Windows().Resolve(inWindowID)) {
        window->vrWidth = widthBoxels;
        window->vrHeight = heightBoxels;
    }
}

int XPLMGetWindowIsVisible(XPLMWindowID inWindowID) {
    const Window* const window = here().Windows().Resolve(inWindowID);
    return window != nullptr && window->visible ? 1 : 0;
}

void XPLMSetWindowIsVisible(XPLMWindowID inWindowID, int inIsVisible) {
    if (Window* window = here().Windows().Resolve(inWindowID)) {
        window->visible = inIsVisible != 0;
    }
}

int XPLMWindowIsPoppedOut(XPLMWindowID inWindowID) {
    const Window* const window = here().Windows().Resolve(inWindowID);
    return window != nullptr && window->mode == xplm_WindowPopOut ? 1 : 0;
}

// There is no headset.
int XPLMWindowIsInVR(XPLMWindowID inWindowID) {
    here().Windows().Resolve(inWindowID);
    return 0;
}

void XPLMSetWindowGravity(XPLMWindowID inWindowID, float inLeftGravity, float inTopGravity,
                          float inRightGravity, float inBottomGravity) {
    if (Window* window = here().Windows().Resolve(inWindowID)) {
        window->gravity = {inLeftGravity, inTopGravity, inRightGravity, inBottomGravity};
    }
}

void XPLMSetWindowResizingLimits(XPLMWindowID inWindowID, int inMinWidthBoxels,
                                 int inMinHeightBoxels, int inMaxWidthBoxels,
                                 int inMaxHeightBoxels) {
    if (Window* window = here().Windows().Resolve(inWindowID)) {
        window->limits = {inMinWidthBoxels, inMinHeightBoxels, inMaxWidthBoxels, inMaxHeightBoxels};
    }
}

void XPLMSetWindowPositioningMode(XPLMWindowID inWindowID,
                                  XPLMWindowPositioningMode inPositioningMode,
                                  int /*inMonitorIndex*/) {
    here().Windows().SetPositioningMode(inWindowID, inPositioningMode);
}

void XPLMSetWindowTitle(XPLMWindowID inWindowID, const char* inWindowTitle) {
    Window* const window = here().Windows().Resolve(inWindowID);
    if (headless::isGiven(inWindowTitle, "title") && window != nullptr) {
        window->title = inWindowTitle;
    }
}

void* XPLMGetWindowRefCon(XPLMWindowID inWindowID) {
    const Window* const window = here().Windows().Resolve(inWindowID);
    return window == nullptr ? nullptr : window->parameters.refcon;
}

void XPLMSetWindowRefCon(XPLMWindowID inWindowID, void* inRefcon) {
    if (Window* window = here().Windows().Resolve(inWindowID)) {
        window->parameters.refcon = inRefcon;
    }
}

void XPLMTakeKeyboardFocus(XPLMWindowID inWindow) {
    here().Windows().TakeFocus(inWindow);
}

// Null asks whether the simulator itself has the keyboard.
int XPLMHasKeyboardFocus(XPLMWindowID inWindow) {
    return here().Windows().Focused() == inWindow ? 1 : 0;
}

void XPLMBringWindowToFront(XPLMWindowID inWindow) {
    here().Windows().BringToFront(inWindow);
}

int XPLMIsWindowInFront(XPLMWindowID inWindow) {
    return here().Windows().IsInFront(inWindow) ? 1 : 0;
}
