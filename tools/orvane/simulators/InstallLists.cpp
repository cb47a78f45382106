#include "tools/orvane/simulators/InstallLists.h"

#include <fstream>
#include <string>

namespace orvane::tool {

std::vector<std::filesystem::path> InstalledSimulators(const std::filesystem::path& home) {
    std::vector<std::filesystem::path> folders;
    for (const char* const version : {"12", "11", "10"}) {
        std::ifstream list(home / ".x-plane" /
                           (std::string("x-plane_install_") + version + ".txt"));
        for (std::string line; std::getline(list, line);) {
            line.resize(line.find_last_not_of("\r ") + 1);
            std::error_code ignored;
            if (!line.empty() && std::filesystem::is_directory(line, ignored)) {
                folders.emplace_back(line);
            }
        }
    }
    return folders;
}

} // namespace orvane::tool
