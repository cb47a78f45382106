#pragma once

#include "tools/orvane/dump/Endpoint.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tool::dump {

enum class Direction { ToPlugin, FromPlugin };

// What the plugin makes of something that is not as it should be.
enum class MarkKind {
    Torn,          // not there as a whole when the plugin looked
    Unknown,       // an identification, a message, a packet or a number that nobody knows
    Odd,           // whole and known, but not right
    EndsSimulator, // the process ends; the text is the line in its log
    Missing,       // not in the capture
};

// "torn", "unknown", "odd", "ends the simulator", "missing"
const char* markWord(MarkKind kind);

struct Mark {
    MarkKind kind = MarkKind::Odd;
    std::string text{};

    bool operator==(const Mark&) const = default;
};

// One message of either protocol, or an event of a connection.
struct Message {
    std::int64_t timeNs = 0; // since 1970; a packet has that of its request
    Endpoint client{};
    Direction direction = Direction::ToPlugin;
    std::string protocol{}; // "tarnel", "velmar", or "tcp"
    std::string kind{};     // "data", "read dataref", ...
    std::string text{};     // what people want to know, in one line
    nlohmann::ordered_json values = nlohmann::ordered_json::object(); // the same, typed
    std::vector<Mark> marks{};
    // From the request to this answer.
    std::optional<std::int64_t> responseNs{};
};

} // namespace orvane::tool::dump
