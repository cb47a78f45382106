#include "tools/orvane/plugin/StatusReport.h"

#include <fmt/core.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/plugin/Firewall.h"
#include "tools/orvane/plugin/LogLines.h"
#include "tools/orvane/plugin/LogReport.h"
#include "tools/orvane/plugin/PluginFiles.h"
#include "tools/orvane/plugin/PortOwner.h"

namespace orvane::tool::plugin {

namespace {

namespace fs = std::filesystem;

constexpr const char* kLog = "Log.txt";
constexpr const char* kVerboseMarker = "XPLANEORVANE_VERBOSE";

bool isThere(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(path, ignored);
}

StatusItem installedItem(const fs::path& simulator) {
    const fs::path file = simulator / kPluginFolder / kPluginFile;
    if (!isThere(file)) {
        return {.subject = "installed", .place = file.string(), .text = "no"};
    }
    const auto version = pluginVersionOf(file);
    return {.subject = "installed",
            .place = file.string(),
            .value = version.value_or(""),
            .text = version.value_or("the file is not this plugin")};
}

StatusItem configurationItem(const fs::path& simulator) {
    const fs::path file = simulator / kConfiguration;
    return {.subject = "settings",
            .place = file.string(),
            .value = isThere(file) ? "yes" : "",
            .text = isThere(file) ? kConfiguration : "none yet; the plugin writes them"};
}

StatusItem lineItem(const fs::path& log, const LoggedLines& lines) {
    const std::string error = errorTextOf(lines.last);
    return {.subject = "log line",
            .place = log.string(),
            .value = lines.last,
            .text = error.empty() ? lines.last : fmt::format("{} ({})", lines.last, error),
            .count = lines.count,
            .explanation = lines.explanation};
}

StatusItem verboseItem(const fs::path& simulator, const fs::path& log, std::size_t count) {
    const bool isOn = isThere(simulator / kVerboseMarker);
    return {.subject = "verbose",
            .place = log.string(),
            .value = isOn ? "on" : "off",
            .text = fmt::format("{}; {} such lines in the log",
                                isOn ? "on: the file XPLANEORVANE_VERBOSE is there" : "off", count),
            .count = count};
}

StatusItems logItems(const fs::path& simulator, const std::vector<Explanation>& explanations) {
    const fs::path log = simulator / kLog;
    if (!isThere(log)) {
        return {{.subject = "log", .place = log.string(), .text = "none yet"}};
    }
    const LogReport report = readLog(log, explanations);
    std::size_t count = 0;
    StatusItems items;
    for (const LoggedLines& lines : report.lines) {
        items.push_back(lineItem(log, lines));
        count += lines.count;
    }
    if (report.verboseCount > 0 || isThere(simulator / kVerboseMarker)) {
        items.push_back(verboseItem(simulator, log, report.verboseCount));
    }
    items.insert(
        items.begin(),
        {.subject = "log",
         .place = log.string(),
         .value = kLog,
         .text = fmt::format("{}: {} of the plugin", kLog,
                             count == 1 ? "one message" : fmt::format("{} messages", count)),
         .count = count});
    return items;
}

StatusItem loadedItem(const PortOwner& owner) {
    const auto loaded = loadedPluginOf(owner.pid);
    if (!loaded) {
        return {.subject = "loaded", .text = "this program has not loaded the plugin"};
    }
    if (loaded->isGone) {
        return {.subject = "loaded",
                .place = loaded->file,
                .text = fmt::format("{}, as it was before it was replaced or removed: restart the "
                                    "simulator",
                                    loaded->file)};
    }
    const std::string version = pluginVersionOf(loaded->file).value_or("");
    return {.subject = "loaded",
            .place = loaded->file,
            .value = version,
            .text = fmt::format("{}, {}", version, loaded->file)};
}

} // namespace

StatusItems statusOfSimulator(const fs::path& simulator,
                              const std::vector<Explanation>& explanations) {
    StatusItems items{{.subject = "simulator",
                       .place = simulator.string(),
                       .value = simulator.string(),
                       .text = simulator.string()},
                      installedItem(simulator),
                      configurationItem(simulator)};
    const StatusItems log = logItems(simulator, explanations);
    items.insert(items.end(), log.begin(), log.end());
    return items;
}

StatusItems statusOfPort(std::uint16_t port) {
    const std::string place = fmt::format("port {}", port);
    StatusItems items;
    for (const PortOwner& owner : ownersOf(port)) {
        if (owner.pid == 0) {
            items.push_back({.subject = "port",
                             .place = place,
                             .text = fmt::format("{} is taken by a program of the user {}; as that "
                                                 "user or as root this command names it",
                                                 port, userName(owner.user))});
            continue;
        }
        items.push_back({.subject = "port",
                         .place = place,
                         .value = owner.program,
                         .text = fmt::format("{} is taken by {}, process {}, of the user {}", port,
                                             owner.program, owner.pid, userName(owner.user))});
        items.push_back(loadedItem(owner));
    }
    if (items.empty()) {
        items.push_back({.subject = "port",
                         .place = place,
                         .text = fmt::format("nobody on this machine listens on {}", port)});
    }
    return items;
}

StatusItem statusOfFirewall(std::uint16_t port) {
    const FirewallState state = firewallStateFor(port);
    return {.subject = "firewall",
            .place = fmt::format("port {}", port),
            .value = state.reach,
            .text = state.reach.empty() ? state.reason
                                        : fmt::format("{}: {}", state.reach, state.reason)};
}

} // namespace orvane::tool::plugin
