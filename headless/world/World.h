#pragma once

#include <memory>
#include <string>
#include <vector>

#include "headless/world/FlightModel.h"
#include "headless/world/WorldOptions.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// A simulator's datarefs and commands, those from files before the built-in ones, and an aircraft
// that flies. Borrows the simulator.
class World final {
public:
    // Throws TextFileError if a file cannot be read.
    World(Simulator& filledSimulator, const WorldOptions& options);
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    // What was wrong with the files, one line each.
    const std::vector<std::string>& Warnings() const { return warnings; }

    // Advances time; the aircraft flies for `flownSeconds` of it.
    void Advance(double seconds, double flownSeconds) const;

    // Moves the aircraft.
    FlightModel& Model() const { return *flightModel; }

    // Loads another aircraft, which plugins know by this description.
    void LoadAircraft(const std::string& description) const;

private:
    void defineFrom(const WorldOptions& options);

    Simulator& simulator;
    std::unique_ptr<FlightModel> flightModel;
    std::vector<std::string> warnings;
};

} // namespace headless
