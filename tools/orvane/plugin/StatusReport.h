#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace orvane::tool::plugin {

struct Explanation;

// One thing that `orvane plugin status` found out. Empty texts say nothing.
struct StatusItem {
    // A word for scripts, which is also what people read.
    std::string subject{};
    // The folder, the file, or the host and the port.
    std::string place{};
    // A version, a name, "open"; empty if it is not known or there is none.
    std::string value{};
    // For people.
    std::string text{};
    // Of the lines of a log.
    std::size_t count = 0;
    const Explanation* explanation = nullptr;
};

using StatusItems = std::vector<StatusItem>;

// The plugin in a simulator's folder, its configuration file and its lines in the log.
StatusItems statusOfSimulator(const std::filesystem::path& simulator,
                              const std::vector<Explanation>& explanations);

// Who listens on the port of this machine, and the plugin that has been loaded there.
StatusItems statusOfPort(std::uint16_t port);

StatusItem statusOfFirewall(std::uint16_t port);

} // namespace orvane::tool::plugin
