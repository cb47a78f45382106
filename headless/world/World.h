#pragma once

#include <memory>
#include <string>
#include <vector>

#include "headless/world/FlightModel.h"
#include "headless/world/WorldVersion.h"
#include "headless/xplm/Simulator.h"

namespace headless {

// What a world is made of. Empty file names mean none.
struct WorldOptions {
    std::string datarefsFile{};
    std::string commandsFile{};
    // The version of the simulator whose sizes it has: 10, 11 or 12.
    int version = kUsualWorld.number;
    // Elevation of the ground, in metres above mean sea level.
    double groundMetres = 0.0;
};

// The world of a simulator: its datarefs and commands, those of files before the built-in ones, and
// an aircraft that flies. Borrows the simulator.
class World final {
public:
    // Throws TextFileError for files that cannot be read.
    World(Simulator& filledSimulator, const WorldOptions& options);
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    // What was wrong with the files, one line each.
    const std::vector<std::string>& Warnings() const { return warnings; }

    // Time passes; the aircraft flies for so many seconds of it.
    void Advance(double seconds, double flownSeconds) const;

    // What moves the aircraft.
    FlightModel& Model() const { return *flightModel; }

    // Another aircraft comes, which plugins know by this description.
    void LoadAircraft(const std::string& description) const;

private:
    void defineFrom(const WorldOptions& options);

    Simulator& simulator;
    std::unique_ptr<FlightModel> flightModel;
    std::vector<std::string> warnings;
};

} // namespace headless
