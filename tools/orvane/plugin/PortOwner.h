#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tool::plugin {

// A program of this machine that listens on a TCP port.
struct PortOwner {
    uid_t user = 0;
    // 0 and empty if it is another user's: only root sees those.
    pid_t pid = 0;
    std::string program{};
};

// In the network of this process.
std::vector<PortOwner> ownersOf(std::uint16_t port);

// A user's name, or the number as text.
std::string userName(uid_t user);

// The plugin that a process has loaded.
struct LoadedPlugin {
    std::string file{};
    // The file has been replaced or removed since.
    bool isGone = false;
};

// None if it has not loaded one, or is another user's.
std::optional<LoadedPlugin> loadedPluginOf(pid_t pid);

} // namespace orvane::tool::plugin
