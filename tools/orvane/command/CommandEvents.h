#pragma once

#include <set>
#include <string>
#include <vector>

#include "orvane/velmar/Client.h"

namespace orvane::tool {

// What happened to a command, as far as questions now and then can tell.
struct CommandEvent {
    enum class Kind {
        Down,
        Up,
        Pressed, // down and up between two questions, once or more often
    };

    std::string command;
    Kind kind = Kind::Pressed;

    friend bool operator==(const CommandEvent&, const CommandEvent&) = default;
};

const char* nameOf(CommandEvent::Kind kind);

// Makes events of what `velmar::Client::pollPresses` reports again and again.
class CommandEvents final {
public:
    std::vector<CommandEvent> Take(const std::vector<velmar::CommandReport>& reports);

private:
    std::set<std::string> down;
};

} // namespace orvane::tool
