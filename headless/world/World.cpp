#include "headless/world/World.h"

#include "headless/lists/CommandsFile.h"
#include "headless/lists/DatarefsFile.h"
#include "headless/world/CommandEffects.h"
#include "headless/world/DefaultWorld.h"
#include "headless/xplm/planes/Aircraft.h"
#include "headless/xplm/scenery/Terrain.h"

namespace headless {

World::World(Simulator& filledSimulator, const WorldOptions& options) : simulator(filledSimulator) {
    defineFrom(options);
    installDefaultWorld(simulator, worldVersion(options.version));
    simulator.Terrain().SetElevation(options.groundMetres);
    installCommandEffects(simulator);
    flightModel = std::make_unique<FlightModel>(simulator);
}

void World::Advance(double seconds, double flownSeconds) const {
    flightModel->Advance(flownSeconds);
    DatarefNumber(simulator.Datarefs().Lookup("sim/time/total_running_time_sec"))
        .Set(simulator.Clock().Now() + seconds);
}

void World::LoadAircraft(const std::string& description) const {
    const Dataref* dataref = simulator.Datarefs().Lookup(kAircraftDescription);
    if (dataref->Offers(xplmType_Data)) {
        simulator.Datarefs().SetBytes(kAircraftDescription, description);
    }
    simulator.Aircraft().AnnounceLoaded();
}

void World::defineFrom(const WorldOptions& options) {
    if (!options.datarefsFile.empty()) {
        const DatarefsFile file = DatarefsFile::Read(options.datarefsFile);
        warnings = file.warnings;
        for (const DatarefDefinition& definition : file.definitions) {
            // The simulator's own list names some datarefs twice; the first one counts.
            if (simulator.Datarefs().Lookup(definition.name) == nullptr) {
                simulator.Datarefs().Define(definition);
            }
        }
    }
    if (!options.commandsFile.empty()) {
        for (const CommandDefinition& definition : readCommandsFile(options.commandsFile)) {
            simulator.Commands().Define(definition.name, definition.description);
        }
    }
}

} // namespace headless
