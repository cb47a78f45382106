#pragma once

// Widgets: many at once, and behaviours to call from a widget's function.

#include "XPWidgetDefs.h"

#define NO_PARENT -1
#define PARAM_PARENT -2

typedef struct {
    int left;
    int top;
    int right;
    int bottom;
    int visible;
    const char* descriptor;
    int isRoot;
    // An index into the array, NO_PARENT or PARAM_PARENT.
    int containerIndex;
    XPWidgetClass widgetClass;
} XPWidgetCreate_t;

WIDGET_API void XPUCreateWidgets(const XPWidgetCreate_t* inWidgetDefs, int inCount,
                                 XPWidgetID inParamParent, XPWidgetID* ioWidgets);
WIDGET_API void XPUMoveWidgetBy(XPWidgetID inWidget, int inDeltaX, int inDeltaY);

// 1 when the message was handled.
WIDGET_API int XPUFixedLayout(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1,
                              intptr_t inParam2);
WIDGET_API int XPUSelectIfNeeded(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1,
                                 intptr_t inParam2, int inEatClick);
WIDGET_API int XPUDefocusKeyboard(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1,
                                  intptr_t inParam2, int inEatClick);
WIDGET_API int XPUDragWidget(XPWidgetMessage inMessage, XPWidgetID inWidget, intptr_t inParam1,
                             intptr_t inParam2, int inLeft, int inTop, int inRight, int inBottom);
