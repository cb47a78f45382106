#pragma once

namespace headless {

// What differs between the simulator's versions in the default world.
struct WorldVersion {
    // The major version.
    int number;
    // As the SDK reports it, then as the dataref does.
    int sdkVersion;
    int internalVersion;
    int engines;
    int joystickAxes;
};

constexpr WorldVersion kWorldVersions[] = {
    {10, 10510, 105100, 8, 100}, {11, 11550, 115501, 8, 500}, {12, 12140, 121400, 16, 500}};
constexpr WorldVersion kUsualWorld = kWorldVersions[2];

// kUsualWorld for an unknown number.
constexpr WorldVersion worldVersion(int number) {
    for (const WorldVersion& version : kWorldVersions) {
        if (version.number == number) {
            return version;
        }
    }
    return kUsualWorld;
}

} // namespace headless
