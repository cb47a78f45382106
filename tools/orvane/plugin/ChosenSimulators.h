#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/orvane/simulators/Simulators.h"

namespace orvane::tool::plugin {

// FOLDER, --headless and --all: the simulators that a command is about.
struct ChosenSimulators {
    std::string folder{};
    bool headless = false;
    bool all = false;

    SimulatorKind Kind() const {
        return headless ? SimulatorKind::Headless : SimulatorKind::XPlane;
    }
};

// The folder given, or else all that are listed; listed folders that are not simulators are named
// on standard error. Failure: the folder given is not a simulator.
std::vector<std::filesystem::path> chosenToLookAt(const ChosenSimulators& chosen);

// Failure: as above, none is found, or several are and --all is not given.
std::vector<std::filesystem::path> chosenToChange(const ChosenSimulators& chosen);

} // namespace orvane::tool::plugin
