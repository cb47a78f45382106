#pragma once

// Widgets: types and messages.

#include "XPLMDefs.h"

#define WIDGET_API XPLM_API

typedef void* XPWidgetID;

typedef int XPWidgetPropertyID;

enum {
    xpProperty_Refcon = 0,
    xpProperty_Dragging = 1,
    xpProperty_DragXOff = 2,
    xpProperty_DragYOff = 3,
    xpProperty_Hilited = 4,
    xpProperty_Object = 5,
    xpProperty_Clip = 6,
    xpProperty_Enabled = 7,
    xpProperty_UserStart = 10000
};

typedef struct {
    int x;
    int y;
    // 0 is the left button.
    int button;
    // Of the wheel.
    int delta;
} XPMouseState_t;

typedef struct {
    char key;
    XPLMKeyFlags flags;
    char vkey;
} XPKeyState_t;

typedef struct {
    int dx;
    int dy;
    int dwidth;
    int dheight;
} XPWidgetGeometryChange_t;

// Who gets the message: the widget; it and its parents; it and its children; all of its callbacks;
// one.
typedef int XPDispatchMode;

enum {
    xpMode_Direct = 0,
    xpMode_UpChain = 1,
    xpMode_Recursive = 2,
    xpMode_DirectAllCallbacks = 3,
    xpMode_Once = 4
};

typedef int XPWidgetClass;

#define xpWidgetClass_None 0

typedef int XPWidgetMessage;

enum {
    xpMsg_None = 0,
    xpMsg_Create = 1,
    xpMsg_Destroy = 2,
    xpMsg_Paint = 3,
    xpMsg_Draw = 4,
    xpMsg_KeyPress = 5,
    xpMsg_KeyTakeFocus = 6,
    xpMsg_KeyLoseFocus = 7,
    xpMsg_MouseDown = 8,
    xpMsg_MouseDrag = 9,
    xpMsg_MouseUp = 10,
    xpMsg_Reshape = 11,
    xpMsg_ExposedChanged = 12,
    xpMsg_AcceptChild = 13,
    xpMsg_LoseChild = 14,
    xpMsg_AcceptParent = 15,
    xpMsg_Shown = 16,
    xpMsg_Hidden = 17,
    xpMsg_DescriptorChanged = 18,
    xpMsg_PropertyChanged = 19,
    xpMsg_MouseWheel = 20,
    xpMsg_CursorAdjust = 21,
    xpMsg_UserStart = 10000
};

// 1 when the message was handled.
typedef int (*XPWidgetFunc_t)(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1,
                              intptr_t inParam2);
