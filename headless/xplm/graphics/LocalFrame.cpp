#include "headless/xplm/graphics/LocalFrame.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace headless {

void LocalFrame::SetReference(double latitude, double longitude) {
    referenceLatitude = latitude;
    referenceLongitude = longitude;
}

LocalPosition LocalFrame::ToLocal(const WorldPosition& position) const {
    // The shorter way around the globe.
    const double east = std::remainder(position.longitude - referenceLongitude, 360.0);
    return {east * metresPerLongitude(), position.altitude,
            (referenceLatitude - position.latitude) * kMetresPerDegree};
}

WorldPosition LocalFrame::ToWorld(const LocalPosition& position) const {
    const double longitude = referenceLongitude + position.x / metresPerLongitude();
    return {referenceLatitude - position.z / kMetresPerDegree, std::remainder(longitude, 360.0),
            position.y};
}

double LocalFrame::metresPerLongitude() const {
    // Not quite zero at the poles, where the map has no width.
    constexpr double kLeast = 0.01;
    const double radians = referenceLatitude * std::numbers::pi / 180.0;
    return kMetresPerDegree * std::max(kLeast, std::cos(radians));
}

} // namespace headless
