#pragma once

#include "headless/world/WorldVersion.h"
#include "headless/xplm/Simulator.h"

#include <string_view>

namespace headless {

// The datarefs and commands that the headless simulator has without any file: the well-known ones
// of flight controls, flight model, instruments and aircraft. Names and types are the simulator's.
class DefaultWorld final {
public:
    static constexpr std::string_view kAircraftDescription = "sim/aircraft/view/acf_descrip";

    // Defines what is not defined yet, so a list read from a file goes first. The aircraft stands
    // in the air, trimmed and level. The simulator gets the version.
    static void Install(Simulator& simulator, const WorldVersion& version = kUsualWorld);
};

} // namespace headless
