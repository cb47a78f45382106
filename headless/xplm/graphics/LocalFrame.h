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

// The local coordinates: a flat map around a reference point, y being the altitude. A degree of
// latitude is 111,320 m everywhere, one of longitude that times the cosine of the reference's
// latitude, so that conversions there and back give the same again at any distance.
class LocalFrame final {
public:
    static constexpr double kMetresPerDegree = 111'320.0;
    static constexpr double kStartLatitude = 47.26;
    static constexpr double kStartLongitude = 11.34;

    // Degrees. The place of the default world, unless told otherwise.
    void SetReference(double latitude, double longitude);

    LocalPosition ToLocal(const WorldPosition& position) const;
    WorldPosition ToWorld(const LocalPosition& position) const;

private:
    double metresPerLongitude() const;

    double referenceLatitude = kStartLatitude;
    double referenceLongitude = kStartLongitude;
};

} // namespace headless
