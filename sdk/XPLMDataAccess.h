#pragma once

// Datarefs: named, typed values that the simulator and its plugins share.
//
// All functions belong to the simulator's main thread. Array reads follow one convention: a null
// buffer asks for the element count; otherwise at most `inMax` elements from `inOffset` on are
// copied and their number is returned.

#include "XPLMDefs.h"

typedef void* XPLMDataRef;

// A set of the bits below: a dataref may offer its value in several types.
typedef int XPLMDataTypeID;

enum {
    xplmType_Unknown = 0,
    xplmType_Int = 1,
    xplmType_Float = 2,
    xplmType_Double = 4,
    xplmType_FloatArray = 8,
    xplmType_IntArray = 16,
    xplmType_Data = 32
};

// Returns null for an unknown name. Look-ups are slow; handles stay valid.
XPLM_API XPLMDataRef XPLMFindDataRef(const char* inDataRefName);
// The number of datarefs; indices start at 0 and stay valid while the simulator runs.
XPLM_API int XPLMCountDataRefs(void);
XPLM_API void XPLMGetDataRefsByIndex(int offset, int count, XPLMDataRef* outDataRefs);

typedef struct {
    int structSize;
    // Borrowed; lives as long as the dataref.
    const char* name;
    XPLMDataTypeID type;
    int writable;
    XPLMPluginID owner;
} XPLMDataRefInfo_t;

XPLM_API void XPLMGetDataRefInfo(XPLMDataRef inDataRef, XPLMDataRefInfo_t* outInfo);

// 0 for a handle that was never given out and for an orphan, whose owner is gone.
XPLM_API int XPLMIsDataRefGood(XPLMDataRef inDataRef);
XPLM_API int XPLMCanWriteDataRef(XPLMDataRef inDataRef);
XPLM_API XPLMDataTypeID XPLMGetDataRefTypes(XPLMDataRef inDataRef);

XPLM_API int XPLMGetDatai(XPLMDataRef inDataRef);
XPLM_API void XPLMSetDatai(XPLMDataRef inDataRef, int inValue);
XPLM_API float XPLMGetDataf(XPLMDataRef inDataRef);
XPLM_API void XPLMSetDataf(XPLMDataRef inDataRef, float inValue);
XPLM_API double XPLMGetDatad(XPLMDataRef inDataRef);
XPLM_API void XPLMSetDatad(XPLMDataRef inDataRef, double inValue);
XPLM_API int XPLMGetDatavi(XPLMDataRef inDataRef, int* outValues, int inOffset, int inMax);
XPLM_API void XPLMSetDatavi(XPLMDataRef inDataRef, int* inValues, int inOffset, int inCount);
XPLM_API int XPLMGetDatavf(XPLMDataRef inDataRef, float* outValues, int inOffset, int inMax);
XPLM_API void XPLMSetDatavf(XPLMDataRef inDataRef, float* inValues, int inOffset, int inCount);
XPLM_API int XPLMGetDatab(XPLMDataRef inDataRef, void* outValue, int inOffset, int inMaxBytes);
XPLM_API void XPLMSetDatab(XPLMDataRef inDataRef, void* inValue, int inOffset, int inLength);

// Accessors of a dataref that a plugin publishes. `inRefcon` is what was given at registration.
typedef int (*XPLMGetDatai_f)(void* inRefcon);
typedef void (*XPLMSetDatai_f)(void* inRefcon, int inValue);
typedef float (*XPLMGetDataf_f)(void* inRefcon);
typedef void (*XPLMSetDataf_f)(void* inRefcon, float inValue);
typedef double (*XPLMGetDatad_f)(void* inRefcon);
typedef void (*XPLMSetDatad_f)(void* inRefcon, double inValue);
typedef int (*XPLMGetDatavi_f)(void* inRefcon, int* outValues, int inOffset, int inMax);
typedef void (*XPLMSetDatavi_f)(void* inRefcon, int* inValues, int inOffset, int inCount);
typedef int (*XPLMGetDatavf_f)(void* inRefcon, float* outValues, int inOffset, int inMax);
typedef void (*XPLMSetDatavf_f)(void* inRefcon, float* inValues, int inOffset, int inCount);
typedef int (*XPLMGetDatab_f)(void* inRefcon, void* outValue, int inOffset, int inMaxLength);
typedef void (*XPLMSetDatab_f)(void* inRefcon, void* inValue, int inOffset, int inLength);

// Returns null when the simulator refuses. Accessor slots of other types stay null.
XPLM_API XPLMDataRef XPLMRegisterDataAccessor(
    const char* inDataName, XPLMDataTypeID inDataType, int inIsWritable, XPLMGetDatai_f inReadInt,
    XPLMSetDatai_f inWriteInt, XPLMGetDataf_f inReadFloat, XPLMSetDataf_f inWriteFloat,
    XPLMGetDatad_f inReadDouble, XPLMSetDatad_f inWriteDouble, XPLMGetDatavi_f inReadIntArray,
    XPLMSetDatavi_f inWriteIntArray, XPLMGetDatavf_f inReadFloatArray,
    XPLMSetDatavf_f inWriteFloatArray, XPLMGetDatab_f inReadData, XPLMSetDatab_f inWriteData,
    void* inReadRefcon, void* inWriteRefcon);
XPLM_API void XPLMUnregisterDataAccessor(XPLMDataRef inDataRef);

// Shared data: a dataref that belongs to all plugins and lives in the simulator.
typedef void (*XPLMDataChanged_f)(void* inRefcon);

// Creates the data if needed. Returns 0 when the name exists with another type.
XPLM_API int XPLMShareData(const char* inDataName, XPLMDataTypeID inDataType,
                           XPLMDataChanged_f inNotificationFunc, void* inNotificationRefcon);
// The arguments are those of XPLMShareData.
XPLM_API int XPLMUnshareData(const char* inDataName, XPLMDataTypeID inDataType,
                             XPLMDataChanged_f inNotificationFunc, void* inNotificationRefcon);
