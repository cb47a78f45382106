#include "headless/xplm/graphics/LocalFrame.h"

#include <cmath>
#include <numbers>

namespace headless {

namespace {

constexpr double kMetresPerLatitude = 111'320.0;
const double kMetresPerLongitude =
    kMetresPerLatitude * std::cos(kStartLatitude * std::numbers::pi / 180.0);

} // namespace

LocalPosition toLocal(const WorldPosition& position) {
    // The shorter way around the globe.
    const double east = std::remainder(position.longitude - kStartLongitude, 360.0);
    return {east * kMetresPerLongitude, position.altitude,
            (kStartLatitude - position.latitude) * kMetresPerLatitude};
}

WorldPosition toWorld(const LocalPosition& position) {
    const double longitude = kStartLongitude + position.x / kMetresPerLongitude;
    return {kStartLatitude - position.z / kMetresPerLatitude, std::remainder(longitude, 360.0),
            position.y};
}

} // namespace headless
