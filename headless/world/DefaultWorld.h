#pragma once

#include <string_view>

#include "headless/world/WorldVersion.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// Names the aircraft.
constexpr std::string_view kAircraftDescription = "sim/aircraft/view/acf_descrip";

// The datarefs and commands that the headless simulator has without any file: the well-known ones
// of flight controls, flight model, instruments and aircraft. Names and types are the simulator's.
//
// Defines what is not defined yet, so a list read from a file goes first. The aircraft stands
// in the air, trimmed and level. The simulator gets the version.
void installDefaultWorld(Simulator& simulator, const WorldVersion& version = kUsualWorld);

} // namespace headless
