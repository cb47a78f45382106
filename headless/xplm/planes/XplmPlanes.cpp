#include "XPLMPlanes.h"

#include <string>

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/graphics/LocalFrame.h"
#include "headless/xplm/planes/Aircraft.h"

using headless::give;
using headless::here;

void XPLMSetUsersAircraft(const char* inAircraftPath) {
    headless::Simulator& simulator = here();
    if (inAircraftPath == nullptr) {
        simulator.Recorder().Refuse(headless::Refusal::NullText, "path");
    } else {
        simulator.Aircraft().LoadUsers(inAircraftPath);
    }
}

// There are no airports.
void XPLMPlaceUserAtAirport(const char* /*inAirportCode*/) {
    here().NotSimulated();
}

void XPLMPlaceUserAtLocation(double latitudeDegrees, double longitudeDegrees,
                             float elevationMetersMSL, float headingDegreesTrue,
                             float speedMetersPerSecond) {
    here().PlaceUser({latitudeDegrees, longitudeDegrees, static_cast<double>(elevationMetersMSL)},
                     static_cast<double>(headingDegreesTrue),
                     static_cast<double>(speedMetersPerSecond));
}

XPLMInitResult XPLMInitFlight(const char* /*inInitString*/) {
    here().NotSimulated();
    return xplm_Init_Success;
}

XPLMInitResult XPLMUpdateFlight(const char* /*inUpdateString*/) {
    here().NotSimulated();
    return xplm_Init_Success;
}

void XPLMCountAircraft(int* outTotalAircraft, int* outActiveAircraft, XPLMPluginID* outController) {
    const headless::Aircraft& aircraft = here().Aircraft();
    give(outTotalAircraft, headless::Aircraft::kMost);
    give(outActiveAircraft, aircraft.Active());
    give(outController, aircraft.Controller());
}

void XPLMGetNthAircraftModel(int inIndex, char* outFileName, char* outPath) {
    constexpr std::size_t kNameSize = 256;
    constexpr std::size_t kPathSize = 512;
    const std::string path = here().Aircraft().ModelOf(inIndex);
    headless::giveText(outFileName, kNameSize, path.substr(path.rfind('/') + 1));
    headless::giveText(outPath, kPathSize, path);
}

int XPLMAcquirePlanes(char** inAircraft, XPLMPlanesAvailable_f inCallback, void* inRefcon) {
    return here().Aircraft().Acquire(inAircraft, inCallback, inRefcon) ? 1 : 0;
}

void XPLMReleasePlanes(void) {
    here().Aircraft().Release();
}

void XPLMSetActiveAircraftCount(int inCount) {
    here().Aircraft().SetActive(inCount);
}

void XPLMSetAircraftModel(int inIndex, const char* inAircraftPath) {
    here().Aircraft().SetModel(inIndex, inAircraftPath);
}

// No aircraft has an AI pilot to switch off.
void XPLMDisableAIForPlane(int /*inPlaneIndex*/) {
    here();
}

void XPLMDrawAircraft(int /*inPlaneIndex*/, float /*inX*/, float /*inY*/, float /*inZ*/,
                      float /*inPitch*/, float /*inRoll*/, float /*inYaw*/, int /*inFullDraw*/,
                      XPLMPlaneDrawState_t* /*inDrawStateInfo*/) {
    here().Draw();
}

// The aircraft flies on as it is.
void XPLMReinitUsersPlane(void) {
    here();
}
