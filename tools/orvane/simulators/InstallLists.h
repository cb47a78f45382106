#pragma once

#include <filesystem>
#include <vector>

namespace orvane::tool {

// The folders of the simulators that a user has installed and that are still there, the newest
// version first. Each version of the simulator lists its installations in a file in the home
// folder.
std::vector<std::filesystem::path> InstalledSimulators(const std::filesystem::path& home);

} // namespace orvane::tool
