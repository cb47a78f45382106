#pragma once

namespace headless {

// Degrees, and metres above mean sea level.
struct WorldPosition {
    double latitude = 0.0;
    double longitude = 0.0;
    double altitude = 0.0;
};

// Metres: x east, y up, z south.
struct LocalPosition {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// Where the aircraft starts, in degrees: the reference of the local frame.
constexpr double kStartLatitude = 47.26;
constexpr double kStartLongitude = 11.34;

// The local coordinates: a flat map around the reference; y is the altitude. A degree of latitude
// is 111,320 m everywhere; a degree of longitude is that times the cosine of the reference's
// latitude. Converting there and back gives the same position at any distance.
LocalPosition toLocal(const WorldPosition& position);
WorldPosition toWorld(const LocalPosition& position);

} // namespace headless
