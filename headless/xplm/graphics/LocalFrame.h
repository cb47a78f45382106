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

// The local coordinates: a flat map around a reference point; y is the altitude. A degree of
// latitude is 111,320 m everywhere; a degree of longitude is that times the cosine of the
// reference's latitude. Converting there and back gives the same position at any distance.
class LocalFrame final {
public:
    static constexpr double kMetresPerDegree = 111'320.0;
    static constexpr double kStartLatitude = 47.26;
    static constexpr double kStartLongitude = 11.34;

    // Degrees. Initially the place of the default world.
    void SetReference(double latitude, double longitude);

    LocalPosition ToLocal(const WorldPosition& position) const;
    WorldPosition ToWorld(const LocalPosition& position) const;

private:
    double metresPerLongitude() const;

    double referenceLatitude = kStartLatitude;
    double referenceLongitude = kStartLongitude;
};

} // namespace headless
