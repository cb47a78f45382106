#include "XPLMScenery.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/scenery/Objects.h"
#include "headless/xplm/scenery/Terrain.h"

using headless::here;

XPLMProbeRef XPLMCreateProbe(XPLMProbeType /*inProbeType*/) {
    return here().Terrain().Probes().Add({});
}

void XPLMDestroyProbe(XPLMProbeRef inProbe) {
    here().Terrain().Probes().Remove(inProbe);
}

XPLMProbeResult XPLMProbeTerrainXYZ(XPLMProbeRef inProbe, float inX, float /*inY*/, float inZ,
                                    XPLMProbeInfo_t* outInfo) {
    headless::Terrain& terrain = here().Terrain();
    headless::isGiven(outInfo, "information");
    return terrain.Probe(inProbe, inX, inZ, outInfo);
}

float XPLMGetMagneticVariation(double /*latitude*/, double /*longitude*/) {
    here();
    return 0.0F;
}

float XPLMDegTrueToDegMagnetic(float headingDegreesTrue) {
    here();
    return headingDegreesTrue;
}

float XPLMDegMagneticToDegTrue(float headingDegreesMagnetic) {
    here();
    return headingDegreesMagnetic;
}

XPLMObjectRef XPLMLoadObject(const char* inPath) {
    headless::Objects& objects = here().Objects();
    return headless::isGiven(inPath, "path") ? objects.Load(inPath) : nullptr;
}

void XPLMLoadObjectAsync(const char* inPath, XPLMObjectLoaded_f inCallback, void* inRefcon) {
    headless::Objects& objects = here().Objects();
    if (headless::isGiven(inPath, "path") && headless::isGiven(inCallback, "callback")) {
        objects.LoadLater(inPath, inCallback, inRefcon);
    }
}

void XPLMDrawObjects(XPLMObjectRef inObject, int /*inCount*/, XPLMDrawInfo_t* /*inLocations*/,
                     int /*lighting*/, int /*earth_relative*/) {
    headless::Simulator& simulator = here();
    simulator.Draw();
    simulator.Objects().Resolve(inObject);
}

void XPLMUnloadObject(XPLMObjectRef inObject) {
    here().Objects().Unload(inObject);
}

// There is no object library.
int XPLMLookupObjects(const char* /*inPath*/, float /*inLatitude*/, float /*inLongitude*/,
                      XPLMLibraryEnumerator_f /*enumerator*/, void* /*ref*/) {
    here();
    return 0;
}
