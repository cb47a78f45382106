#include "tools/orvane/plugin/PortOwner.h"

#include <pwd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <fmt/core.h>

#include "headless/lists/ParsedNumber.h"
#include "tools/orvane/plugin/PluginFiles.h"

namespace orvane::tool::plugin {

namespace {

namespace fs = std::filesystem;

constexpr const char* kListening = "0A";

struct Listener {
    uid_t user = 0;
    std::string inode{};
};

// Fields of a line: number, local address, remote address, state, queues, timer, retransmits,
// user, timeout, inode.
void addListener(std::vector<Listener>& listeners, const std::string& line,
                 const std::string& portInHex) {
    std::istringstream fields(line);
    std::array<std::string, 10> field{};
    for (std::string& each : field) {
        fields >> each;
    }
    if (field[1].ends_with(portInHex) && field[3] == kListening) {
        listeners.push_back({headless::parsedNumber<uid_t>(field[7]).value_or(0), field[9]});
    }
}

std::vector<Listener> listenersOn(std::uint16_t port) {
    const std::string portInHex = fmt::format(":{:04X}", port);
    std::vector<Listener> listeners;
    for (const char* const table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
        std::ifstream lines(table);
        for (std::string line; std::getline(lines, line);) {
            addListener(listeners, line, portInHex);
        }
    }
    return listeners;
}

// False also if the process is another user's.
bool hasOpen(const fs::path& process, const std::string& target) {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(process / "fd", ignored)) {
        if (fs::read_symlink(entry.path(), ignored) == target) {
            return true;
        }
    }
    return false;
}

pid_t processWith(const std::string& inode) {
    const std::string target = fmt::format("socket:[{}]", inode);
    std::error_code ignored;
    for (const fs::directory_entry& process : fs::directory_iterator("/proc", ignored)) {
        const pid_t pid =
            headless::parsedNumber<pid_t>(process.path().filename().string()).value_or(0);
        if (pid != 0 && hasOpen(process.path(), target)) {
            return pid;
        }
    }
    return 0;
}

std::string programOf(pid_t pid) {
    std::ifstream file(fmt::format("/proc/{}/comm", pid));
    std::string name;
    std::getline(file, name);
    return name;
}

std::optional<LoadedPlugin> pluginIn(const std::string& mapped) {
    constexpr std::string_view kGone = " (deleted)";
    LoadedPlugin loaded{mapped, mapped.ends_with(kGone)};
    if (loaded.isGone) {
        loaded.file.resize(mapped.size() - kGone.size());
    }
    const bool isOurs =
        loaded.isGone ? loaded.file.ends_with(fmt::format("{}/{}", kPluginFolder, kPluginFile))
                      : loaded.file.ends_with(".xpl") && pluginVersionOf(loaded.file);
    return isOurs ? std::optional(loaded) : std::nullopt;
}

} // namespace

std::vector<PortOwner> ownersOf(std::uint16_t port) {
    std::vector<PortOwner> owners;
    for (const Listener& listener : listenersOn(port)) {
        const pid_t pid = processWith(listener.inode);
        const bool isKnown = std::any_of(owners.begin(), owners.end(), [&](const PortOwner& owner) {
            return pid != 0 && owner.pid == pid;
        });
        if (!isKnown) {
            owners.push_back({listener.user, pid, pid == 0 ? "" : programOf(pid)});
        }
    }
    return owners;
}

std::string userName(uid_t user) {
    const passwd* const entry = ::getpwuid(user);
    return entry == nullptr ? std::to_string(user) : entry->pw_name;
}

std::optional<LoadedPlugin> loadedPluginOf(pid_t pid) {
    std::ifstream maps(fmt::format("/proc/{}/maps", pid));
    std::string last;
    for (std::string line; std::getline(maps, line);) {
        // A library has several lines.
        const std::size_t begin = line.find('/');
        if (begin == std::string::npos || line.substr(begin) == last) {
            continue;
        }
        last = line.substr(begin);
        if (auto plugin = pluginIn(last)) {
            return plugin;
        }
    }
    return std::nullopt;
}

} // namespace orvane::tool::plugin
