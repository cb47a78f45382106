#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvane::tool::dump {

struct TarnelOutput {
    std::uint32_t id = 0;
    std::string name{};
    std::int32_t type = 0;
    std::int32_t first = 0;
    std::int32_t count = 0;

    // Only commands of the plugin's own are; any other is reported as an output without a value.
    bool IsWatchedCommand() const;
    bool IsArray() const;
    // "float", "int[3] from 2", "command", "type 5"
    std::string TypeText() const;
};

// What the DEFINITIONS messages of a connection have declared so far.
struct TarnelDefinitions {
    // False when the capture began in the middle: there may be definitions that it does not show.
    bool areKnown = true;
    std::map<std::int32_t, std::vector<std::string>> targets{}; // of each action, by its identifier
    std::vector<TarnelOutput> outputs{};
};

} // namespace orvane::tool::dump
