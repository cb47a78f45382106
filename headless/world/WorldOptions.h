#pragma once

#include <string>

#include "headless/world/WorldVersion.h"

namespace headless {

// What a world is made of. An empty file name means no file.
struct WorldOptions {
    std::string datarefsFile{};
    std::string commandsFile{};
    // The version of the simulator whose array sizes it has: 10, 11 or 12.
    int version = kUsualWorld.number;
    // Elevation of the ground, in metres above mean sea level.
    double groundMetres = 0.0;
};

} // namespace headless
