#pragma once

// The user's aircraft and those of others.

#include "XPLMDefs.h"

#define XPLM_USER_AIRCRAFT (0)

XPLM_API void XPLMSetUsersAircraft(const char* inAircraftPath);
XPLM_API void XPLMPlaceUserAtAirport(const char* inAirportCode);
XPLM_API void XPLMPlaceUserAtLocation(double latitudeDegrees, double longitudeDegrees,
                                      float elevationMetersMSL, float headingDegreesTrue,
                                      float speedMetersPerSecond);

typedef int XPLMInitResult;

enum {
    xplm_Init_Success = 0,
    xplm_Init_Invalid = 1,
    xplm_Init_MissingAircraft = 2,
    xplm_Init_MissingLivery = 3,
    xplm_Init_MissingAirport = 4,
    xplm_Init_MissingRamp = 5,
    xplm_Init_MissingRunway = 6
};

// The flight as JSON.
XPLM_API XPLMInitResult XPLMInitFlight(const char* inInitString);
XPLM_API XPLMInitResult XPLMUpdateFlight(const char* inUpdateString);

// Any output may be null.
XPLM_API void XPLMCountAircraft(int* outTotalAircraft, int* outActiveAircraft,
                                XPLMPluginID* outController);
// 256 and 512 characters.
XPLM_API void XPLMGetNthAircraftModel(int inIndex, char* outFileName, char* outPath);

typedef void (*XPLMPlanesAvailable_f)(void* inRefcon);

// 1 if the caller has the planes now; else the callback says when to ask again.
XPLM_API int XPLMAcquirePlanes(char** inAircraft, XPLMPlanesAvailable_f inCallback, void* inRefcon);
XPLM_API void XPLMReleasePlanes(void);
XPLM_API void XPLMSetActiveAircraftCount(int inCount);
XPLM_API void XPLMSetAircraftModel(int inIndex, const char* inAircraftPath);
XPLM_API void XPLMDisableAIForPlane(int inPlaneIndex);

typedef struct {
    int structSize;
    float gearPosition;
    float flapRatio;
    float spoilerRatio;
    float speedBrakeRatio;
    float slatRatio;
    float wingSweep;
    float thrust;
    float yokePitch;
    float yokeHeading;
    float yokeRoll;
} XPLMPlaneDrawState_t;

XPLM_API void XPLMDrawAircraft(int inPlaneIndex, float inX, float inY, float inZ, float inPitch,
                               float inRoll, float inYaw, int inFullDraw,
                               XPLMPlaneDrawState_t* inDrawStateInfo);
XPLM_API void XPLMReinitUsersPlane(void);
