#include "XPLMDataAccess.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"

using headless::here;
using headless::Simulator;

XPLMDataRef XPLMFindDataRef(const char* inDataRefName) {
    return here().Datarefs().Find(inDataRefName);
}

int XPLMCanWriteDataRef(XPLMDataRef inDataRef) {
    return here().Access().CanWrite(inDataRef) ? 1 : 0;
}

XPLMDataTypeID XPLMGetDataRefTypes(XPLMDataRef inDataRef) {
    return here().Access().Types(inDataRef);
}

int XPLMGetDatai(XPLMDataRef inDataRef) {
    return here().Access().GetInt(inDataRef);
}

void XPLMSetDatai(XPLMDataRef inDataRef, int inValue) {
    here().Access().SetInt(inDataRef, inValue);
}

float XPLMGetDataf(XPLMDataRef inDataRef) {
    return here().Access().GetFloat(inDataRef);
}

void XPLMSetDataf(XPLMDataRef inDataRef, float inValue) {
    here().Access().SetFloat(inDataRef, inValue);
}

double XPLMGetDatad(XPLMDataRef inDataRef) {
    return here().Access().GetDouble(inDataRef);
}

void XPLMSetDatad(XPLMDataRef inDataRef, double inValue) {
    here().Access().SetDouble(inDataRef, inValue);
}

int XPLMGetDatavi(XPLMDataRef inDataRef, int* outValues, int inOffset, int inMax) {
    return here().Access().GetInts(inDataRef, outValues, inOffset, inMax);
}

void XPLMSetDatavi(XPLMDataRef inDataRef, int* inValues, int inOffset, int inCount) {
    here().Access().SetInts(inDataRef, inValues, inOffset, inCount);
}

int XPLMGetDatavf(XPLMDataRef inDataRef, float* outValues, int inOffset, int inMax) {
    return here().Access().GetFloats(inDataRef, outValues, inOffset, inMax);
}

void XPLMSetDatavf(XPLMDataRef inDataRef, float* inValues, int inOffset, int inCount) {
    here().Access().SetFloats(inDataRef, inValues, inOffset, inCount);
}

int XPLMGetDatab(XPLMDataRef inDataRef, void* outValue, int inOffset, int inMaxBytes) {
    return here().Access().GetBytes(inDataRef, outValue, inOffset, inMaxBytes);
}

void XPLMSetDatab(XPLMDataRef inDataRef, void* inValue, int inOffset, int inLength) {
    here().Access().SetBytes(inDataRef, inValue, inOffset, inLength);
}

XPLMDataRef XPLMRegisterDataAccessor(
    const char* inDataName, XPLMDataTypeID inDataType, int inIsWritable, XPLMGetDatai_f inReadInt,
    XPLMSetDatai_f inWriteInt, XPLMGetDataf_f inReadFloat, XPLMSetDataf_f inWriteFloat,
    XPLMGetDatad_f inReadDouble, XPLMSetDatad_f inWriteDouble, XPLMGetDatavi_f inReadIntArray,
    XPLMSetDatavi_f inWriteIntArray, XPLMGetDatavf_f inReadFloatArray,
    XPLMSetDatavf_f inWriteFloatArray, XPLMGetDatab_f inReadData, XPLMSetDatab_f inWriteData,
    void* inReadRefcon, void* inWriteRefcon) {
    return here().Datarefs().Register(
        inDataName, inDataType, inIsWritable != 0,
        {inReadInt, inWriteInt, inReadFloat, inWriteFloat, inReadDouble, inWriteDouble,
         inReadIntArray, inWriteIntArray, inReadFloatArray, inWriteFloatArray, inReadData,
         inWriteData, inReadRefcon, inWriteRefcon});
}

void XPLMUnregisterDataAccessor(XPLMDataRef inDataRef) {
    here().Datarefs().Unregister(inDataRef);
}

int XPLMCountDataRefs(void) {
    return here().Datarefs().Count();
}

void XPLMGetDataRefsByIndex(int offset, int count, XPLMDataRef* outDataRefs) {
    const headless::DatarefTable& datarefs = here().Datarefs();
    const bool hasRoom = count <= 0 || headless::isGiven(outDataRefs, "datarefs");
    for (int i = 0; i < count && hasRoom; ++i) {
        outDataRefs[i] = datarefs.Nth(offset + i);
    }
}

void XPLMGetDataRefInfo(XPLMDataRef inDataRef, XPLMDataRefInfo_t* outInfo) {
    const headless::Dataref* const dataref = here().Datarefs().Peek(inDataRef);
    if (!headless::isGiven(outInfo, "information")) {
        return;
    }
    // Fields that do not fit in the caller's structure are left out.
    XPLMDataRefInfo_t info{outInfo->structSize, "", xplmType_Unknown, 0, XPLM_NO_PLUGIN_ID};
    if (dataref != nullptr) {
        const headless::DatarefDefinition& definition = dataref->Definition();
        info.name = definition.name.c_str();
        info.type = definition.types;
        info.writable = definition.writable ? 1 : 0;
        info.owner = dataref->IsLive() ? dataref->Plugin() : XPLM_NO_PLUGIN_ID;
    }
    headless::giveStructure(outInfo, info);
}

int XPLMIsDataRefGood(XPLMDataRef inDataRef) {
    const headless::Dataref* const dataref = here().Datarefs().Peek(inDataRef);
    return dataref != nullptr && dataref->IsLive() ? 1 : 0;
}

int XPLMShareData(const char* inDataName, XPLMDataTypeID inDataType,
                  XPLMDataChanged_f inNotificationFunc, void* inNotificationRefcon) {
    Simulator& simulator = here();
    return simulator.Datarefs().Share(
               inDataName, inDataType,
               {inNotificationFunc, inNotificationRefcon, simulator.Context().Plugin()})
               ? 1
               : 0;
}

int XPLMUnshareData(const char* inDataName, XPLMDataTypeID inDataType,
                    XPLMDataChanged_f inNotificationFunc, void* inNotificationRefcon) {
    Simulator& simulator = here();
    return simulator.Datarefs().Unshare(
               inDataName, inDataType,
               {inNotificationFunc, inNotificationRefcon, simulator.Context().Plugin()})
               ? 1
               : 0;
}
