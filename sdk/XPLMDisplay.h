#pragma once

// Drawing callbacks, avionics, windows, and the keyboard.

#include "XPLMDefs.h"

// Drawing callbacks.
typedef int XPLMDrawingPhase;

enum {
    xplm_Phase_FirstScene = 0,
    xplm_Phase_Terrain = 5,
    xplm_Phase_Airports = 10,
    xplm_Phase_Vectors = 15,
    xplm_Phase_Objects = 20,
    xplm_Phase_Airplanes = 25,
    xplm_Phase_LastScene = 30,
    xplm_Phase_Modern3D = 31,
    xplm_Phase_FirstCockpit = 35,
    xplm_Phase_Panel = 40,
    xplm_Phase_Gauges = 45,
    xplm_Phase_Window = 50,
    xplm_Phase_LastCockpit = 55
};

typedef int (*XPLMDrawCallback_f)(XPLMDrawingPhase inPhase, int inIsBefore, void* inRefcon);

XPLM_API int XPLMRegisterDrawCallback(XPLMDrawCallback_f inCallback, XPLMDrawingPhase inPhase,
                                      int inWantsBefore, void* inRefcon);
XPLM_API int XPLMUnregisterDrawCallback(XPLMDrawCallback_f inCallback, XPLMDrawingPhase inPhase,
                                        int inWantsBefore, void* inRefcon);

// Avionics: devices of the simulator that a plugin customises, and devices of its own.
typedef int XPLMDeviceID;
typedef void* XPLMAvionicsID;

typedef int (*XPLMAvionicsCallback_f)(XPLMDeviceID inDeviceID, int inIsBefore, void* inRefcon);
typedef int (*XPLMAvionicsMouse_f)(int x, int y, XPLMMouseStatus inMouse, void* inRefcon);
typedef int (*XPLMAvionicsMouseWheel_f)(int x, int y, int wheel, int clicks, void* inRefcon);
typedef XPLMCursorStatus (*XPLMAvionicsCursor_f)(int x, int y, void* inRefcon);
typedef int (*XPLMAvionicsKeyboard_f)(char inKey, XPLMKeyFlags inFlags, char inVirtualKey,
                                      void* inRefCon, int losingFocus);

typedef struct {
    int structSize;
    XPLMDeviceID deviceId;
    XPLMAvionicsCallback_f drawCallbackBefore;
    XPLMAvionicsCallback_f drawCallbackAfter;
    XPLMAvionicsMouse_f bezelClickCallback;
    XPLMAvionicsMouse_f bezelRightClickCallback;
    XPLMAvionicsMouseWheel_f bezelScrollCallback;
    XPLMAvionicsCursor_f bezelCursorCallback;
    XPLMAvionicsMouse_f screenTouchCallback;
    XPLMAvionicsMouse_f screenRightTouchCallback;
    XPLMAvionicsMouseWheel_f screenScrollCallback;
    XPLMAvionicsCursor_f screenCursorCallback;
    XPLMAvionicsKeyboard_f keyboardCallback;
    void* refcon;
} XPLMCustomizeAvionics_t;

XPLM_API XPLMAvionicsID XPLMRegisterAvionicsCallbacksEx(XPLMCustomizeAvionics_t* inParams);
XPLM_API XPLMAvionicsID XPLMGetAvionicsHandle(XPLMDeviceID inDeviceID);
XPLM_API void XPLMUnregisterAvionicsCallbacks(XPLMAvionicsID inAvionicsId);

typedef void (*XPLMAvionicsScreenCallback_f)(void* inRefcon);
typedef void (*XPLMAvionicsBezelCallback_f)(float inAmbiantR, float inAmbiantG, float inAmbiantB,
                                            void* inRefcon);
typedef float (*XPLMAvionicsBrightness_f)(float inRheoValue, float inAmbiantBrightness,
                                          float inBusVoltsRatio, void* inRefcon);

typedef struct {
    int structSize;
    int screenWidth;
    int screenHeight;
    int bezelWidth;
    int bezelHeight;
    int screenOffsetX;
    int screenOffsetY;
    int drawOnDemand;
    XPLMAvionicsBezelCallback_f bezelDrawCallback;
    XPLMAvionicsScreenCallback_f drawCallback;
    XPLMAvionicsMouse_f bezelClickCallback;
    XPLMAvionicsMouse_f bezelRightClickCallback;
    XPLMAvionicsMouseWheel_f bezelScrollCallback;
    XPLMAvionicsCursor_f bezelCursorCallback;
    XPLMAvionicsMouse_f screenTouchCallback;
    XPLMAvionicsMouse_f screenRightTouchCallback;
    XPLMAvionicsMouseWheel_f screenScrollCallback;
    XPLMAvionicsCursor_f screenCursorCallback;
    XPLMAvionicsKeyboard_f keyboardCallback;
    XPLMAvionicsBrightness_f brightnessCallback;
    const char* deviceID;
    const char* deviceName;
    void* refcon;
} XPLMCreateAvionics_t;

XPLM_API XPLMAvionicsID XPLMCreateAvionicsEx(XPLMCreateAvionics_t* inParams);
XPLM_API void XPLMDestroyAvionics(XPLMAvionicsID inHandle);
XPLM_API int XPLMIsAvionicsBound(XPLMAvionicsID inHandle);
XPLM_API void XPLMSetAvionicsBrightnessRheo(XPLMAvionicsID inHandle, float brightness);
XPLM_API float XPLMGetAvionicsBrightnessRheo(XPLMAvionicsID inHandle);
XPLM_API float XPLMGetAvionicsBusVoltsRatio(XPLMAvionicsID inHandle);
XPLM_API int XPLMIsCursorOverAvionics(XPLMAvionicsID inHandle, int* outX, int* outY);
XPLM_API void XPLMAvionicsNeedsDrawing(XPLMAvionicsID inHandle);
XPLM_API void XPLMSetAvionicsPopupVisible(XPLMAvionicsID inHandle, int inVisible);
XPLM_API int XPLMIsAvionicsPopupVisible(XPLMAvionicsID inHandle);
XPLM_API void XPLMPopOutAvionics(XPLMAvionicsID inHandle);
XPLM_API int XPLMIsAvionicsPoppedOut(XPLMAvionicsID inHandle);
XPLM_API void XPLMTakeAvionicsKeyboardFocus(XPLMAvionicsID inHandle);
XPLM_API int XPLMHasAvionicsKeyboardFocus(XPLMAvionicsID inHandle);
XPLM_API void XPLMGetAvionicsGeometry(XPLMAvionicsID inHandle, int* outLeft, int* outTop,
                                      int* outRight, int* outBottom);
XPLM_API void XPLMSetAvionicsGeometry(XPLMAvionicsID inHandle, int inLeft, int inTop, int inRight,
                                      int inBottom);
XPLM_API void XPLMGetAvionicsGeometryOS(XPLMAvionicsID inHandle, int* outLeft, int* outTop,
                                        int* outRight, int* outBottom);
XPLM_API void XPLMSetAvionicsGeometryOS(XPLMAvionicsID inHandle, int inLeft, int inTop, int inRight,
                                        int inBottom);

// Windows.
typedef void* XPLMWindowID;

typedef void (*XPLMDrawWindow_f)(XPLMWindowID inWindowID, void* inRefcon);
typedef void (*XPLMHandleKey_f)(XPLMWindowID inWindowID, char inKey, XPLMKeyFlags inFlags,
                                char inVirtualKey, void* inRefcon, int losingFocus);
typedef int (*XPLMHandleMouseClick_f)(XPLMWindowID inWindowID, int x, int y,
                                      XPLMMouseStatus inMouse, void* inRefcon);
typedef XPLMCursorStatus (*XPLMHandleCursor_f)(XPLMWindowID inWindowID, int x, int y,
                                               void* inRefcon);
typedef int (*XPLMHandleMouseWheel_f)(XPLMWindowID inWindowID, int x, int y, int wheel, int clicks,
                                      void* inRefcon);

typedef int XPLMWindowLayer;

enum {
    xplm_WindowLayerFlightOverlay = 0,
    xplm_WindowLayerFloatingWindows = 1,
    xplm_WindowLayerModal = 2,
    xplm_WindowLayerGrowlNotifications = 3
};

typedef int XPLMWindowDecoration;

enum {
    xplm_WindowDecorationNone = 0,
    xplm_WindowDecorationRoundRectangle = 1,
    xplm_WindowDecorationSelfDecorated = 2,
    xplm_WindowDecorationSelfDecoratedResizable = 3
};

// Plugins of older SDKs pass a shorter structure; structSize shows which.
typedef struct {
    int structSize;
    int left;
    int top;
    int right;
    int bottom;
    int visible;
    XPLMDrawWindow_f drawWindowFunc;
    XPLMHandleMouseClick_f handleMouseClickFunc;
    XPLMHandleKey_f handleKeyFunc;
    XPLMHandleCursor_f handleCursorFunc;
    XPLMHandleMouseWheel_f handleMouseWheelFunc;
    void* refcon;
    XPLMWindowDecoration decorateAsFloatingWindow;
    XPLMWindowLayer layer;
    XPLMHandleMouseClick_f handleRightClickFunc;
} XPLMCreateWindow_t;

XPLM_API XPLMWindowID XPLMCreateWindowEx(XPLMCreateWindow_t* inParams);
XPLM_API XPLMWindowID XPLMCreateWindow(int inLeft, int inTop, int inRight, int inBottom,
                                       int inIsVisible, XPLMDrawWindow_f inDrawCallback,
                                       XPLMHandleKey_f inKeyCallback,
                                       XPLMHandleMouseClick_f inMouseCallback, void* inRefcon);
XPLM_API void XPLMDestroyWindow(XPLMWindowID inWindowID);

// Screens. Any output may be null.
typedef void (*XPLMReceiveMonitorBoundsGlobal_f)(int inMonitorIndex, int inLeftBx, int inTopBx,
                                                 int inRightBx, int inBottomBx, void* inRefcon);
typedef void (*XPLMReceiveMonitorBoundsOS_f)(int inMonitorIndex, int inLeftPx, int inTopPx,
                                             int inRightPx, int inBottomPx, void* inRefcon);

XPLM_API void XPLMGetScreenSize(int* outWidth, int* outHeight);
XPLM_API void XPLMGetScreenBoundsGlobal(int* outLeft, int* outTop, int* outRight, int* outBottom);
XPLM_API void XPLMGetAllMonitorBoundsGlobal(
    XPLMReceiveMonitorBoundsGlobal_f inMonitorBoundsCallback, void* inRefcon);
XPLM_API void XPLMGetAllMonitorBoundsOS(XPLMReceiveMonitorBoundsOS_f inMonitorBoundsCallback,
                                        void* inRefcon);
XPLM_API void XPLMGetMouseLocation(int* outX, int* outY);
XPLM_API void XPLMGetMouseLocationGlobal(int* outX, int* outY);

XPLM_API void XPLMGetWindowGeometry(XPLMWindowID inWindowID, int* outLeft, int* outTop,
                                    int* outRight, int* outBottom);
XPLM_API void XPLMSetWindowGeometry(XPLMWindowID inWindowID, int inLeft, int inTop, int inRight,
                                    int inBottom);
XPLM_API void XPLMGetWindowGeometryOS(XPLMWindowID inWindowID, int* outLeft, int* outTop,
                                      int* outRight, int* outBottom);
XPLM_API void XPLMSetWindowGeometryOS(XPLMWindowID inWindowID, int inLeft, int inTop, int inRight,
                                      int inBottom);
XPLM_API void XPLMGetWindowGeometryVR(XPLMWindowID inWindowID, int* outWidthBoxels,
                                      int* outHeightBoxels);
XPLM_API void XPLMSetWindowGeometryVR(XPLMWindowID inWindowID, int widthBoxels, int heightBoxels);
XPLM_API int XPLMGetWindowIsVisible(XPLMWindowID inWindowID);
XPLM_API void XPLMSetWindowIsVisible(XPLMWindowID inWindowID, int inIsVisible);
XPLM_API int XPLMWindowIsPoppedOut(XPLMWindowID inWindowID);
XPLM_API int XPLMWindowIsInVR(XPLMWindowID inWindowID);
XPLM_API void XPLMSetWindowGravity(XPLMWindowID inWindowID, float inLeftGravity, float inTopGravity,
                                   float inRightGravity, float inBottomGravity);
XPLM_API void XPLMSetWindowResizingLimits(XPLMWindowID inWindowID, int inMinWidthBoxels,
                                          int inMinHeightBoxels, int inMaxWidthBoxels,
                                          int inMaxHeightBoxels);

typedef int XPLMWindowPositioningMode;

enum {
    xplm_WindowPositionFree = 0,
    xplm_WindowCenterOnMonitor = 1,
    xplm_WindowFullScreenOnMonitor = 2,
    xplm_WindowFullScreenOnAllMonitors = 3,
    xplm_WindowPopOut = 4,
    xplm_WindowVR = 5
};

XPLM_API void XPLMSetWindowPositioningMode(XPLMWindowID inWindowID,
                                           XPLMWindowPositioningMode inPositioningMode,
                                           int inMonitorIndex);
XPLM_API void XPLMSetWindowTitle(XPLMWindowID inWindowID, const char* inWindowTitle);
XPLM_API void* XPLMGetWindowRefCon(XPLMWindowID inWindowID);
XPLM_API void XPLMSetWindowRefCon(XPLMWindowID inWindowID, void* inRefcon);
// Null gives the keyboard back to the simulator.
XPLM_API void XPLMTakeKeyboardFocus(XPLMWindowID inWindow);
XPLM_API int XPLMHasKeyboardFocus(XPLMWindowID inWindow);
XPLM_API void XPLMBringWindowToFront(XPLMWindowID inWindow);
XPLM_API int XPLMIsWindowInFront(XPLMWindowID inWindow);

// Keys before they reach a window or the simulator. The callback's 0 swallows the key.
typedef int (*XPLMKeySniffer_f)(char inChar, XPLMKeyFlags inFlags, char inVirtualKey,
                                void* inRefcon);

XPLM_API int XPLMRegisterKeySniffer(XPLMKeySniffer_f inCallback, int inBeforeWindows,
                                    void* inRefcon);
XPLM_API int XPLMUnregisterKeySniffer(XPLMKeySniffer_f inCallback, int inBeforeWindows,
                                      void* inRefcon);

typedef void (*XPLMHotKey_f)(void* inRefcon);
typedef void* XPLMHotKeyID;

XPLM_API XPLMHotKeyID XPLMRegisterHotKey(char inVirtualKey, XPLMKeyFlags inFlags,
                                         const char* inDescription, XPLMHotKey_f inCallback,
                                         void* inRefcon);
XPLM_API void XPLMUnregisterHotKey(XPLMHotKeyID inHotKey);
XPLM_API int XPLMCountHotKeys(void);
XPLM_API XPLMHotKeyID XPLMGetNthHotKey(int inIndex);
// 512 characters of description.
XPLM_API void XPLMGetHotKeyInfo(XPLMHotKeyID inHotKey, char* outVirtualKey, XPLMKeyFlags* outFlags,
                                char* outDescription, XPLMPluginID* outPlugin);
XPLM_API void XPLMSetHotKeyCombination(XPLMHotKeyID inHotKey, char inVirtualKey,
                                       XPLMKeyFlags inFlags);
