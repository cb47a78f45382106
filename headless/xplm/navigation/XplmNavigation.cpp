#include "XPLMNavigation.h"

#include <cstring>
#include <string>

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/navigation/FlightPlan.h"

using headless::FlightPlanEntry;
using headless::give;
using headless::giveText;
using headless::here;

namespace {

void giveEntry(const FlightPlanEntry& entry, XPLMNavType* type, char* id, XPLMNavRef* reference,
               int* altitude, float* latitude, float* longitude) {
    // The size that the SDK's examples use.
    constexpr std::size_t kIdSize = 256;
    give(type, entry.type);
    giveText(id, kIdSize, entry.id);
    give(reference, entry.reference);
    give(altitude, entry.altitude);
    give(latitude, entry.latitude);
    give(longitude, entry.longitude);
}

// The database is empty, so a reference finds nothing.
FlightPlanEntry referenceEntry(XPLMNavRef reference, int altitude) {
    return {xplm_Nav_Unknown, "", reference, altitude, 0.0F, 0.0F};
}

FlightPlanEntry placeEntry(float latitude, float longitude, int altitude) {
    return {xplm_Nav_LatLon, "", XPLM_NAV_NOT_FOUND, altitude, latitude, longitude};
}

} // namespace

XPLMNavRef XPLMGetFirstNavAid(void) {
    here();
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef XPLMGetNextNavAid(XPLMNavRef /*inNavAidRef*/) {
    here();
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef XPLMFindFirstNavAidOfType(XPLMNavType /*inType*/) {
    here();
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef XPLMFindLastNavAidOfType(XPLMNavType /*inType*/) {
    here();
    return XPLM_NAV_NOT_FOUND;
}

XPLMNavRef XPLMFindNavAid(const char* /*inNameFragment*/, const char* /*inIDFragment*/,
                          float* /*inLat*/, float* /*inLon*/, int* /*inFrequency*/,
                          XPLMNavType /*inType*/) {
    here();
    return XPLM_NAV_NOT_FOUND;
}

void XPLMGetNavAidInfo(XPLMNavRef /*inRef*/, XPLMNavType* outType, float* outLatitude,
                       float* outLongitude, float* outHeight, int* outFrequency, float* outHeading,
                       char* outID, char* outName, char* outReg) {
    here();
    give(outType, static_cast<XPLMNavType>(xplm_Nav_Unknown));
    give(outLatitude, 0.0F);
    give(outLongitude, 0.0F);
    give(outHeight, 0.0F);
    give(outFrequency, 0);
    give(outHeading, 0.0F);
    giveText(outID, 1, "");
    giveText(outName, 1, "");
    // One character: whether the navaid is in the region of the local map.
    give(outReg, '\0');
}

int XPLMCountFMSEntries(void) {
    return here().Plans().Of(xplm_Fpl_Pilot_Primary).Count();
}

int XPLMGetDisplayedFMSEntry(void) {
    return here().Plans().Of(xplm_Fpl_Pilot_Primary).Displayed();
}

int XPLMGetDestinationFMSEntry(void) {
    return here().Plans().Of(xplm_Fpl_Pilot_Primary).Destination();
}

void XPLMSetDisplayedFMSEntry(int inIndex) {
    here().Plans().Of(xplm_Fpl_Pilot_Primary).SetDisplayed(inIndex);
}

void XPLMSetDestinationFMSEntry(int inIndex) {
    here().Plans().Of(xplm_Fpl_Pilot_Primary).SetDestination(inIndex);
}

void XPLMGetFMSEntryInfo(int inIndex, XPLMNavType* outType, char* outID, XPLMNavRef* outRef,
                         int* outAltitude, float* outLat, float* outLon) {
    giveEntry(here().Plans().Of(xplm_Fpl_Pilot_Primary).At(inIndex), outType, outID, outRef,
              outAltitude, outLat, outLon);
}

void XPLMSetFMSEntryInfo(int inIndex, XPLMNavRef inRef, int inAltitude) {
    here().Plans().Of(xplm_Fpl_Pilot_Primary).Set(inIndex, referenceEntry(inRef, inAltitude));
}

void XPLMSetFMSEntryLatLon(int inIndex, float inLat, float inLon, int inAltitude) {
    here().Plans().Of(xplm_Fpl_Pilot_Primary).Set(inIndex, placeEntry(inLat, inLon, inAltitude));
}

void XPLMClearFMSEntry(int inIndex) {
    here().Plans().Of(xplm_Fpl_Pilot_Primary).Clear(inIndex);
}

int XPLMCountFMSFlightPlanEntries(XPLMNavFlightPlan inFlightPlan) {
    return here().Plans().Of(inFlightPlan).Count();
}

int XPLMGetDisplayedFMSFlightPlanEntry(XPLMNavFlightPlan inFlightPlan) {
    return here().Plans().Of(inFlightPlan).Displayed();
}

int XPLMGetDestinationFMSFlightPlanEntry(XPLMNavFlightPlan inFlightPlan) {
    return here().Plans().Of(inFlightPlan).Destination();
}

void XPLMSetDisplayedFMSFlightPlanEntry(XPLMNavFlightPlan inFlightPlan, int inIndex) {
    here().Plans().Of(inFlightPlan).SetDisplayed(inIndex);
}

void XPLMSetDestinationFMSFlightPlanEntry(XPLMNavFlightPlan inFlightPlan, int inIndex) {
    here().Plans().Of(inFlightPlan).SetDestination(inIndex);
}

void XPLMSetDirectToFMSFlightPlanEntry(XPLMNavFlightPlan inFlightPlan, int inIndex) {
    here().Plans().Of(inFlightPlan).SetDestination(inIndex);
}

void XPLMGetFMSFlightPlanEntryInfo(XPLMNavFlightPlan inFlightPlan, int inIndex,
                                   XPLMNavType* outType, char* outID, XPLMNavRef* outRef,
                                   int* outAltitude, float* outLat, float* outLon) {
    giveEntry(here().Plans().Of(inFlightPlan).At(inIndex), outType, outID, outRef, outAltitude,
              outLat, outLon);
}

void XPLMSetFMSFlightPlanEntryInfo(XPLMNavFlightPlan inFlightPlan, int inIndex, XPLMNavRef inRef,
                                   int inAltitude) {
    here().Plans().Of(inFlightPlan).Set(inIndex, referenceEntry(inRef, inAltitude));
}

void XPLMSetFMSFlightPlanEntryLatLon(XPLMNavFlightPlan inFlightPlan, int inIndex, float inLat,
                                     float inLon, int inAltitude) {
    here().Plans().Of(inFlightPlan).Set(inIndex, placeEntry(inLat, inLon, inAltitude));
}

void XPLMSetFMSFlightPlanEntryLatLonWithId(XPLMNavFlightPlan inFlightPlan, int inIndex, float inLat,
                                           float inLon, int inAltitude, const char* inId,
                                           unsigned int inIdLength) {
    FlightPlanEntry entry = placeEntry(inLat, inLon, inAltitude);
    if (inId != nullptr) {
        entry.id.assign(inId, ::strnlen(inId, inIdLength));
    }
    here().Plans().Of(inFlightPlan).Set(inIndex, entry);
}

void XPLMClearFMSFlightPlanEntry(XPLMNavFlightPlan inFlightPlan, int inIndex) {
    here().Plans().Of(inFlightPlan).Clear(inIndex);
}

// Device 0 is the pilot's, device 1 the copilot's.
void XPLMLoadFMSFlightPlan(int inDevice, const char* inBuffer, unsigned int inBufferLen) {
    headless::FlightPlans& plans = here().Plans();
    if (inBuffer != nullptr) {
        plans.Of(inDevice).Load({inBuffer, inBufferLen});
    }
}

// The length of the text, without a terminating zero; 0 if it does not fit.
unsigned int XPLMSaveFMSFlightPlan(int inDevice, char* inBuffer, unsigned int inBufferLen) {
    const std::string text = here().Plans().Of(inDevice).Save();
    if (inBuffer == nullptr || text.size() > inBufferLen) {
        return 0;
    }
    text.copy(inBuffer, text.size());
    return static_cast<unsigned int>(text.size());
}

XPLMNavType XPLMGetGPSDestinationType(void) {
    here();
    return xplm_Nav_Unknown;
}

XPLMNavRef XPLMGetGPSDestination(void) {
    here();
    return XPLM_NAV_NOT_FOUND;
}
