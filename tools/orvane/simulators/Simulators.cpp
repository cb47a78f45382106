#include "tools/orvane/simulators/Simulators.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>

#include <fmt/core.h>

namespace orvane::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 3> kLists{"x-plane_install_12.txt", "x-plane_install_11.txt",
                                            "x-plane_install_10.txt"};
constexpr std::array<const char*, 2> kPrograms{"X-Plane-x86_64", "X-Plane"};

bool hasProgram(const fs::path& folder) {
    return std::any_of(kPrograms.begin(), kPrograms.end(), [&](const char* program) {
        std::error_code ignored;
        return fs::is_regular_file(folder / program, ignored);
    });
}

std::string trimmed(const std::string& line) {
    constexpr const char* kBlanks = " \t\r";
    const std::size_t begin = line.find_first_not_of(kBlanks);
    return begin == std::string::npos
               ? ""
               : line.substr(begin, line.find_last_not_of(kBlanks) - begin + 1);
}

void add(ListedSimulators& listed, const fs::path& folder, const fs::path& list) {
    const std::string reason = whyNotSimulator(folder, SimulatorKind::XPlane);
    if (!reason.empty()) {
        listed.notes.push_back(fmt::format("{}: {}; skipped", list.string(), reason));
        return;
    }
    const fs::path real = fs::canonical(folder);
    if (std::find(listed.folders.begin(), listed.folders.end(), real) == listed.folders.end()) {
        listed.folders.push_back(real);
    }
}

} // namespace

std::string whyNotSimulator(const fs::path& folder, SimulatorKind kind) {
    std::error_code ignored;
    if (!fs::exists(folder, ignored)) {
        return fmt::format("{}: there is no such folder", folder.string());
    }
    if (!fs::is_directory(folder / "Resources" / "plugins", ignored)) {
        return fmt::format("{} is not a simulator: it has no folder Resources/plugins",
                           folder.string());
    }
    if (kind == SimulatorKind::XPlane && !hasProgram(folder)) {
        return fmt::format(
            "{} is not a simulator: it has neither X-Plane-x86_64 nor X-Plane "
            "(--headless takes a folder of headless-sim)",
            folder.string());
    }
    return "";
}

ListedSimulators listedSimulators(const fs::path& home) {
    ListedSimulators listed;
    if (home.empty()) {
        return listed;
    }
    for (const char* const name : kLists) {
        const fs::path list = home / ".x-plane" / name;
        std::ifstream lines(list);
        for (std::string line; std::getline(lines, line);) {
            const std::string folder = trimmed(line);
            if (!folder.empty()) {
                add(listed, folder, list);
            }
        }
    }
    return listed;
}

fs::path homeFolder() {
    const char* const home = std::getenv("HOME");
    return home == nullptr ? "" : home;
}

} // namespace orvane::tool
