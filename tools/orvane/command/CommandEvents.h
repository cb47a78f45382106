#pragma once

#include <set>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"

namespace orvane::tool {

// What happened to a command, judging by polls.
struct CommandEvent {
    enum class Kind {
        Down,
        Up,
        Pressed, // down and up between two polls, at least once
    };

    std::string command;
    Kind kind = Kind::Pressed;

    friend bool operator==(const CommandEvent&, const CommandEvent&) = default;
};

const char* nameOf(CommandEvent::Kind kind);

// Turns the reports of `velmar::Client::pollPresses` into events.
class CommandEvents final {
public:
    std::vector<CommandEvent> Take(const std::vector<velmar::CommandReport>& reports);

private:
    std::set<std::string> down;
};

} // namespace orvane::tool
