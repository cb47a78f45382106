#pragma once

#include <cstdint>
#include <string>

namespace orvane::tool::plugin {

// What can be found out about the firewall of this machine.
struct FirewallState {
    // "open", "closed", or empty if that is not known.
    std::string reach{};
    // A phrase that says why.
    std::string reason{};
};

// For programs on other machines that connect to a TCP port. Without root only ufw's switch can be
// read.
FirewallState firewallStateFor(std::uint16_t port);

} // namespace orvane::tool::plugin
