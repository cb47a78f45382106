#pragma once

#include <cstdint>
#include <string>

namespace orvane::tool::plugin {

// Whether programs on other machines can reach a TCP port.
enum class Reach {
    Open,
    Closed,
    // For some machines only, or by rules of a kind that is not understood here.
    Depends,
};

// What the rules of `nft -j list ruleset` do with the first IPv4 packet of a connection from
// another machine. Sources, interfaces and whatever else cannot be known count as "perhaps".
// std::exception: the text is not what nft prints.
Reach reachThrough(const std::string& rulesetJson, std::uint16_t port);

} // namespace orvane::tool::plugin
