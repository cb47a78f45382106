#include "headless/xplm/scenery/Terrain.h"

#include "headless/xplm/Outputs.h"

namespace headless {

XPLMProbeResult Terrain::Probe(XPLMProbeRef probe, float x, float z, XPLMProbeInfo_t* information) {
    if (probes.Resolve(probe) == nullptr || information == nullptr) {
        return xplm_ProbeError;
    }
    XPLMProbeInfo_t found{};
    found.locationX = x;
    found.locationY = static_cast<float>(elevation);
    found.locationZ = z;
    found.normalY = 1.0F;
    giveStructure(information, found);
    return xplm_ProbeHitTerrain;
}

} // namespace headless
