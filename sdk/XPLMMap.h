#pragma once

// Layers on the simulator's maps.

#include "XPLMDefs.h"

typedef void* XPLMMapLayerID;
typedef void* XPLMMapProjectionID;

typedef int XPLMMapStyle;

enum {
    xplm_MapStyle_VFR_Sectional = 0,
    xplm_MapStyle_IFR_LowEnroute = 1,
    xplm_MapStyle_IFR_HighEnroute = 2
};

typedef void (*XPLMMapDrawingCallback_f)(XPLMMapLayerID inLayer,
                                         const float* inMapBoundsLeftTopRightBottom,
                                         float zoomRatio, float mapUnitsPerUserInterfaceUnit,
                                         XPLMMapStyle mapStyle, XPLMMapProjectionID projection,
                                         void* inRefcon);
typedef XPLMMapDrawingCallback_f XPLMMapIconDrawingCallback_f;
typedef XPLMMapDrawingCallback_f XPLMMapLabelDrawingCallback_f;
typedef void (*XPLMMapPrepareCacheCallback_f)(XPLMMapLayerID inLayer,
                                              const float* inTotalMapBoundsLeftTopRightBottom,
                                              XPLMMapProjectionID projection, void* inRefcon);
typedef void (*XPLMMapWillBeDeletedCallback_f)(XPLMMapLayerID inLayer, void* inRefcon);

typedef int XPLMMapLayerType;

enum { xplm_MapLayer_Fill = 0, xplm_MapLayer_Markings = 1 };

#define XPLM_MAP_USER_INTERFACE "XPLM_MAP_USER_INTERFACE"
#define XPLM_MAP_IOS "XPLM_MAP_IOS"

typedef struct {
    int structSize;
    const char* mapToCreateLayerIn;
    XPLMMapLayerType layerType;
    XPLMMapWillBeDeletedCallback_f willBeDeletedCallback;
    XPLMMapPrepareCacheCallback_f prepCacheCallback;
    XPLMMapDrawingCallback_f drawCallback;
    XPLMMapIconDrawingCallback_f iconCallback;
    XPLMMapLabelDrawingCallback_f labelCallback;
    int showUiToggle;
    const char* layerName;
    void* refcon;
} XPLMCreateMapLayer_t;

// Null when the map does not exist (yet).
XPLM_API XPLMMapLayerID XPLMCreateMapLayer(XPLMCreateMapLayer_t* inParams);
// 1 when the layer existed.
XPLM_API int XPLMDestroyMapLayer(XPLMMapLayerID inLayer);

typedef void (*XPLMMapCreatedCallback_f)(const char* mapIdentifier, void* refcon);

XPLM_API void XPLMRegisterMapCreationHook(XPLMMapCreatedCallback_f callback, void* refcon);
XPLM_API int XPLMMapExists(const char* mapIdentifier);

typedef int XPLMMapOrientation;

enum { xplm_MapOrientation_Map = 0, xplm_MapOrientation_UI = 1 };

XPLM_API void XPLMDrawMapIconFromSheet(XPLMMapLayerID layer, const char* inPngPath, int s, int t,
                                       int ds, int dt, float mapX, float mapY,
                                       XPLMMapOrientation orientation, float rotationDegrees,
                                       float mapWidth);
XPLM_API void XPLMDrawMapLabel(XPLMMapLayerID layer, const char* inText, float mapX, float mapY,
                               XPLMMapOrientation orientation, float rotationDegrees);
XPLM_API void XPLMMapProject(XPLMMapProjectionID projection, double latitude, double longitude,
                             float* outX, float* outY);
XPLM_API void XPLMMapUnproject(XPLMMapProjectionID projection, float mapX, float mapY,
                               double* outLatitude, double* outLongitude);
XPLM_API float XPLMMapScaleMeter(XPLMMapProjectionID projection, float mapX, float mapY);
XPLM_API float XPLMMapGetNorthHeading(XPLMMapProjectionID projection, float mapX, float mapY);
