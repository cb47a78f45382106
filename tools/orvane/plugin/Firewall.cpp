#include "tools/orvane/plugin/Firewall.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <exception>
#include <fstream>
#include <memory>

#include "tools/orvane/plugin/NftRules.h"

namespace orvane::tool::plugin {

namespace {

constexpr const char* kUfwSwitch = "/etc/ufw/ufw.conf";
constexpr const char* kOldTables = "/proc/net/ip_tables_names";
constexpr const char* kRulesetCommand =
    "PATH=\"$PATH:/usr/sbin:/sbin\" nft -j list ruleset 2>/dev/null";

bool hasLine(const char* file, const std::string& wanted) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (line == wanted) {
            return true;
        }
    }
    return false;
}

// Empty if the command fails.
std::string outputOf(const char* command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command, "re"), ::pclose);
    std::string text;
    std::array<char, 4096> block{};
    std::size_t count = 0;
    while (pipe != nullptr && (count = std::fread(block.data(), 1, block.size(), pipe.get())) > 0) {
        text.append(block.data(), count);
    }
    return text;
}

bool hasOldRules() {
    std::ifstream tables(kOldTables);
    std::string name;
    return static_cast<bool>(tables >> name);
}

FirewallState stateByRules(std::uint16_t port) {
    const std::string ruleset = outputOf(kRulesetCommand);
    if (ruleset.empty()) {
        return {"", "not known: the program nft, which lists the rules, is missing or failed"};
    }
    switch (reachThrough(ruleset, port)) {
    case Reach::Closed:
        return {"closed", "the rules of nft drop connections to it from other machines"};
    case Reach::Open:
        // These tables are not part of nft's.
        return hasOldRules() ? FirewallState{"", "not known: see \"sudo iptables -L\""}
                             : FirewallState{"open", "no rule of nft drops connections to it"};
    case Reach::Depends:
        break;
    }
    return {"", "not known: it depends on more than the port, see \"sudo nft list ruleset\""};
}

} // namespace

FirewallState firewallStateFor(std::uint16_t port) {
    if (::geteuid() != 0) {
        const bool isUfwOn = hasLine(kUfwSwitch, "ENABLED=yes");
        return {"", isUfwOn ? "not known without root; ufw is on, see \"sudo ufw status\""
                            : "not known without root"};
    }
    try {
        return stateByRules(port);
    } catch (const std::exception&) {
        return {"", "not known: nft printed something unexpected"};
    }
}

} // namespace orvane::tool::plugin
