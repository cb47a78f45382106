#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace orvane::tool {

// Which folders count as a simulator's: those with Resources/plugins, and X-Plane's program unless
// they are for headless-sim.
enum class SimulatorKind { XPlane, Headless };

// One line, or empty if the folder is a simulator's.
std::string whyNotSimulator(const std::filesystem::path& folder, SimulatorKind kind);

struct ListedSimulators {
    // Absolute, without symbolic links, each once.
    std::vector<std::filesystem::path> folders{};
    // Lines about listed folders that are not simulators.
    std::vector<std::string> notes{};
};

// The simulators in the lists that X-Plane's installer keeps in a home folder. X-Plane 12 comes
// first. None without a home.
ListedSimulators listedSimulators(const std::filesystem::path& home);

// Of the user who runs the tool; empty if it is not known.
std::filesystem::path homeFolder();

} // namespace orvane::tool
