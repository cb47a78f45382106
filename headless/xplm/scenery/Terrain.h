#pragma once

#include "XPLMScenery.h"
#include "headless/xplm/OwnedObjects.h"

namespace headless {

struct TerrainProbe {};

// The ground: flat and dry, at one elevation everywhere. There is no magnetic variation.
class Terrain final {
public:
    Terrain(PluginContext& pluginContext, CallRecorder& callRecorder)
        : probes(pluginContext, callRecorder, "terrain probe") {}
    Terrain(const Terrain&) = delete;
    Terrain& operator=(const Terrain&) = delete;

    // Metres above mean sea level.
    double Elevation() const { return elevation; }
    void SetElevation(double metres) { elevation = metres; }

    OwnedObjects<TerrainProbe>& Probes() { return probes; }
    XPLMProbeResult Probe(XPLMProbeRef probe, float x, float z, XPLMProbeInfo_t* information);

private:
    double elevation = 0.0;
    OwnedObjects<TerrainProbe> probes;
};

} // namespace headless
