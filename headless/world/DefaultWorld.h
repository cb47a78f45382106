#pragma once

#include <string_view>

#include "headless/world/WorldVersion.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// The dataref that names the aircraft.
constexpr std::string_view kAircraftDescription = "sim/aircraft/view/acf_descrip";

// The datarefs and commands that the headless simulator has without any file: the well-known ones
// of flight controls, flight model, instruments and aircraft. Names and types are the simulator's.
//
// Defines only what is not defined yet, so read lists from files first. The aircraft starts in the
// air, trimmed and level. Sets the simulator's version.
void installDefaultWorld(Simulator& simulator, const WorldVersion& version = kUsualWorld);

} // namespace headless
