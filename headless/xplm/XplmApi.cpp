// The SDK's C functions: each forwards to the current simulator.

#include "XPLMDataAccess.h"
#include "XPLMMenus.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

XPLMDataRef XPLMFindDataRef(const char* inDataRefName) {
    return Simulator::Current().Datarefs().Find(inDataRefName);
}

int XPLMCanWriteDataRef(XPLMDataRef inDataRef) {
    return Simulator::Current().Access().CanWrite(inDataRef) ? 1 : 0;
}

XPLMDataTypeID XPLMGetDataRefTypes(XPLMDataRef inDataRef) {
    return Simulator::Current().Access().Types(inDataRef);
}

int XPLMGetDatai(XPLMDataRef inDataRef) {
    return Simulator::Current().Access().GetInt(inDataRef);
}

void XPLMSetDatai(XPLMDataRef inDataRef, int inValue) {
    Simulator::Current().Access().SetInt(inDataRef, inValue);
}

float XPLMGetDataf(XPLMDataRef inDataRef) {
    return Simulator::Current().Access().GetFloat(inDataRef);
}

void XPLMSetDataf(XPLMDataRef inDataRef, float inValue) {
    Simulator::Current().Access().SetFloat(inDataRef, inValue);
}

double XPLMGetDatad(XPLMDataRef inDataRef) {
    return Simulator::Current().Access().GetDouble(inDataRef);
}

void XPLMSetDatad(XPLMDataRef inDataRef, double inValue) {
    Simulator::Current().Access().SetDouble(inDataRef, inValue);
}

int XPLMGetDatavi(XPLMDataRef inDataRef, int* outValues, int inOffset, int inMax) {
    return Simulator::Current().Access().GetInts(inDataRef, outValues, inOffset, inMax);
}

void XPLMSetDatavi(XPLMDataRef inDataRef, int* inValues, int inOffset, int inCount) {
    Simulator::Current().Access().SetInts(inDataRef, inValues, inOffset, inCount);
}

int XPLMGetDatavf(XPLMDataRef inDataRef, float* outValues, int inOffset, int inMax) {
    return Simulator::Current().Access().GetFloats(inDataRef, outValues, inOffset, inMax);
}

void XPLMSetDatavf(XPLMDataRef inDataRef, float* inValues, int inOffset, int inCount) {
    Simulator::Current().Access().SetFloats(inDataRef, inValues, inOffset, inCount);
}

int XPLMGetDatab(XPLMDataRef inDataRef, void* outValue, int inOffset, int inMaxBytes) {
    return Simulator::Current().Access().GetBytes(inDataRef, outValue, inOffset, inMaxBytes);
}

void XPLMSetDatab(XPLMDataRef inDataRef, void* inValue, int inOffset, int inLength) {
    Simulator::Current().Access().SetBytes(inDataRef, inValue, inOffset, inLength);
}

XPLMDataRef XPLMRegisterDataAccessor(
    const char* inDataName, XPLMDataTypeID inDataType, int inIsWritable, XPLMGetDatai_f inReadInt,
    XPLMSetDatai_f inWriteInt, XPLMGetDataf_f inReadFloat, XPLMSetDataf_f inWriteFloat,
    XPLMGetDatad_f inReadDouble, XPLMSetDatad_f inWriteDouble, XPLMGetDatavi_f inReadIntArray,
    XPLMSetDatavi_f inWriteIntArray, XPLMGetDatavf_f inReadFloatArray,
    XPLMSetDatavf_f inWriteFloatArray, XPLMGetDatab_f inReadData, XPLMSetDatab_f inWriteData,
    void* inReadRefcon, void* inWriteRefcon) {
    return Simulator::Current().Datarefs().Register(
        inDataName, inDataType, inIsWritable != 0,
        {inReadInt, inWriteInt, inReadFloat, inWriteFloat, inReadDouble, inWriteDouble,
         inReadIntArray, inWriteIntArray, inReadFloatArray, inWriteFloatArray, inReadData,
         inWriteData, inReadRefcon, inWriteRefcon});
}

void XPLMUnregisterDataAccessor(XPLMDataRef inDataRef) {
    Simulator::Current().Datarefs().Unregister(inDataRef);
}

XPLMMenuID XPLMFindPluginsMenu(void) {
    return Simulator::Current().PluginsMenu().FindPluginsMenu();
}

int XPLMAppendMenuItem(XPLMMenuID inMenu, const char* inItemName, void* inItemRef,
                       int /*inDeprecatedAndIgnored*/) {
    return Simulator::Current().PluginsMenu().Append(inMenu, inItemName, inItemRef);
}

XPLMPluginID XPLMFindPluginBySignature(const char* inSignature) {
    return Simulator::Current().Plugins().FindBySignature(inSignature);
}

void XPLMSendMessageToPlugin(XPLMPluginID inPlugin, int inMessage, void* inParam) {
    Simulator::Current().Plugins().SendMessage(inPlugin, inMessage, inParam);
}

void XPLMRegisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, float inInterval,
                                    void* inRefcon) {
    Simulator::Current().Loops().Register(inFlightLoop, inInterval, inRefcon);
}

void XPLMUnregisterFlightLoopCallback(XPLMFlightLoop_f inFlightLoop, void* inRefcon) {
    Simulator::Current().Loops().Unregister(inFlightLoop, inRefcon);
}

void XPLMDebugString(const char* inString) {
    Simulator::Current().DebugString(inString);
}

XPLMCommandRef XPLMFindCommand(const char* inName) {
    return Simulator::Current().Commands().Find(inName);
}

void XPLMCommandBegin(XPLMCommandRef inCommand) {
    Simulator::Current().Commands().Begin(inCommand);
}

void XPLMCommandEnd(XPLMCommandRef inCommand) {
    Simulator::Current().Commands().End(inCommand);
}

void XPLMCommandOnce(XPLMCommandRef inCommand) {
    Simulator::Current().Commands().Once(inCommand);
}

XPLMCommandRef XPLMCreateCommand(const char* inName, const char* inDescription) {
    return Simulator::Current().Commands().Create(inName, inDescription);
}

void XPLMRegisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler,
                                int inBefore, void* inRefcon) {
    Simulator::Current().Commands().RegisterHandler(inComand, inHandler, inBefore != 0, inRefcon);
}

void XPLMUnregisterCommandHandler(XPLMCommandRef inComand, XPLMCommandCallback_f inHandler,
                                  int inBefore, void* inRefcon) {
    Simulator::Current().Commands().UnregisterHandler(inComand, inHandler, inBefore != 0, inRefcon);
}
