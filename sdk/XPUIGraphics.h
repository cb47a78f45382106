#pragma once

// The simulator's own look: windows, elements and tracks, and their sizes.

#include "XPWidgetDefs.h"

typedef int XPWindowStyle;
typedef int XPElementStyle;
typedef int XPTrackStyle;

enum { xpTrack_ScrollBar = 0, xpTrack_Slider = 1, xpTrack_Progress = 2 };

WIDGET_API void XPDrawWindow(int inX1, int inY1, int inX2, int inY2, XPWindowStyle inStyle);
WIDGET_API void XPGetWindowDefaultDimensions(XPWindowStyle inStyle, int* outWidth, int* outHeight);
WIDGET_API void XPDrawElement(int inX1, int inY1, int inX2, int inY2, XPElementStyle inStyle,
                              int inLit);
WIDGET_API void XPGetElementDefaultDimensions(XPElementStyle inStyle, int* outWidth, int* outHeight,
                                              int* outCanBeLit);
WIDGET_API void XPDrawTrack(int inX1, int inY1, int inX2, int inY2, int inMin, int inMax,
                            int inValue, XPTrackStyle inTrackStyle, int inLit);
WIDGET_API void XPGetTrackDefaultDimensions(XPTrackStyle inStyle, int* outWidth, int* outCanBeLit);
WIDGET_API void XPGetTrackMetrics(int inX1, int inY1, int inX2, int inY2, int inMin, int inMax,
                                  int inValue, XPTrackStyle inTrackStyle, int* outIsVertical,
                                  int* outDownBtnSize, int* outDownPageSize, int* outThumbSize,
                                  int* outUpPageSize, int* outUpBtnSize);
