#include "XPLMMap.h"

#include "headless/xplm/Here.h"
#include "headless/xplm/Outputs.h"
#include "headless/xplm/graphics/LocalFrame.h"
#include "headless/xplm/map/Maps.h"

using headless::give;
using headless::here;

XPLMMapLayerID XPLMCreateMapLayer(XPLMCreateMapLayer_t* inParams) {
    headless::Simulator& simulator = here();
    if (!headless::isGiven(inParams, "parameters")) {
        return nullptr;
    }
    return simulator.Maps().Create(headless::takeStructure(*inParams));
}

int XPLMDestroyMapLayer(XPLMMapLayerID inLayer) {
    return here().Maps().Destroy(inLayer) ? 1 : 0;
}

// No map is created later.
void XPLMRegisterMapCreationHook(XPLMMapCreatedCallback_f /*callback*/, void* /*refcon*/) {
    here();
}

int XPLMMapExists(const char* mapIdentifier) {
    here();
    return headless::Maps::Exists(mapIdentifier) ? 1 : 0;
}

void XPLMDrawMapIconFromSheet(XPLMMapLayerID layer, const char* /*inPngPath*/, int /*s*/, int /*t*/,
                              int /*ds*/, int /*dt*/, float /*mapX*/, float /*mapY*/,
                              XPLMMapOrientation /*orientation*/, float /*rotationDegrees*/,
                              float /*mapWidth*/) {
    headless::Simulator& simulator = here();
    simulator.Draw();
    simulator.Maps().Resolve(layer);
}

void XPLMDrawMapLabel(XPLMMapLayerID layer, const char* /*inText*/, float /*mapX*/, float /*mapY*/,
                      XPLMMapOrientation /*orientation*/, float /*rotationDegrees*/) {
    headless::Simulator& simulator = here();
    simulator.Draw();
    simulator.Maps().Resolve(layer);
}

// A map's coordinates are metres east and north of the local frame's reference.
void XPLMMapProject(XPLMMapProjectionID /*projection*/, double latitude, double longitude,
                    float* outX, float* outY) {
    here();
    const auto local = headless::toLocal({latitude, longitude, 0.0});
    give(outX, static_cast<float>(local.x));
    give(outY, static_cast<float>(-local.z));
}

void XPLMMapUnproject(XPLMMapProjectionID /*projection*/, float mapX, float mapY,
                      double* outLatitude, double* outLongitude) {
    here();
    const auto world =
        headless::toWorld({static_cast<double>(mapX), 0.0, -static_cast<double>(mapY)});
    give(outLatitude, world.latitude);
    give(outLongitude, world.longitude);
}

float XPLMMapScaleMeter(XPLMMapProjectionID /*projection*/, float /*mapX*/, float /*mapY*/) {
    here();
    return 1.0F;
}

float XPLMMapGetNorthHeading(XPLMMapProjectionID /*projection*/, float /*mapX*/, float /*mapY*/) {
    here();
    return 0.0F;
}
