#pragma once

// Terrain, the magnetic field, and objects.

#include "XPLMDefs.h"

typedef int XPLMProbeType;

enum { xplm_ProbeY = 0 };

typedef int XPLMProbeResult;

enum { xplm_ProbeHitTerrain = 0, xplm_ProbeError = 1, xplm_ProbeMissed = 2 };

typedef void* XPLMProbeRef;

// Local coordinates.
typedef struct {
    int structSize;
    float locationX;
    float locationY;
    float locationZ;
    float normalX;
    float normalY;
    float normalZ;
    float velocityX;
    float velocityY;
    float velocityZ;
    int is_wet;
} XPLMProbeInfo_t;

XPLM_API XPLMProbeRef XPLMCreateProbe(XPLMProbeType inProbeType);
XPLM_API void XPLMDestroyProbe(XPLMProbeRef inProbe);
XPLM_API XPLMProbeResult XPLMProbeTerrainXYZ(XPLMProbeRef inProbe, float inX, float inY, float inZ,
                                             XPLMProbeInfo_t* outInfo);

// Degrees, east positive.
XPLM_API float XPLMGetMagneticVariation(double latitude, double longitude);
XPLM_API float XPLMDegTrueToDegMagnetic(float headingDegreesTrue);
XPLM_API float XPLMDegMagneticToDegTrue(float headingDegreesMagnetic);

typedef void* XPLMObjectRef;

typedef struct {
    int structSize;
    float x;
    float y;
    float z;
    float pitch;
    float heading;
    float roll;
} XPLMDrawInfo_t;

typedef struct {
    int structSize;
    double x;
    double y;
    double z;
    double pitch;
    double heading;
    double roll;
} XPLMDrawInfoDouble_t;

// Null when the object could not be loaded.
typedef void (*XPLMObjectLoaded_f)(XPLMObjectRef inObject, void* inRefcon);

XPLM_API XPLMObjectRef XPLMLoadObject(const char* inPath);
XPLM_API void XPLMLoadObjectAsync(const char* inPath, XPLMObjectLoaded_f inCallback,
                                  void* inRefcon);
XPLM_API void XPLMDrawObjects(XPLMObjectRef inObject, int inCount, XPLMDrawInfo_t* inLocations,
                              int lighting, int earth_relative);
XPLM_API void XPLMUnloadObject(XPLMObjectRef inObject);

typedef void (*XPLMLibraryEnumerator_f)(const char* inFilePath, void* inRef);

XPLM_API int XPLMLookupObjects(const char* inPath, float inLatitude, float inLongitude,
                               XPLMLibraryEnumerator_f enumerator, void* ref);
