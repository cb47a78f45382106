#include "tools/orvane/command/CommandEvents.h"

namespace orvane::tool {

using velmar::CommandReport;
using velmar::CommandState;

const char* nameOf(CommandEvent::Kind kind) {
    switch (kind) {
    case CommandEvent::Kind::Down:
        return "down";
    case CommandEvent::Kind::Up:
        return "up";
    case CommandEvent::Kind::Pressed:
        break;
    }
    return "pressed";
}

// A held command is reported as down each time. It is up again when it is reported differently or
// not at all.
std::vector<CommandEvent> CommandEvents::Take(const std::vector<CommandReport>& reports) {
    std::vector<CommandEvent> events;
    std::set<std::string> nowDown;
    for (const CommandReport& report : reports) {
        const bool wasDown = down.contains(report.name);
        if (report.state == CommandState::Down) {
            nowDown.insert(report.name);
            if (!wasDown) {
                events.push_back({report.name, CommandEvent::Kind::Down});
            }
        } else if (report.state == CommandState::Pressed && !wasDown) {
            events.push_back({report.name, CommandEvent::Kind::Pressed});
        }
    }
    for (const std::string& command : down) {
        if (!nowDown.contains(command)) {
            events.push_back({command, CommandEvent::Kind::Up});
        }
    }
    down = std::move(nowDown);
    return events;
}

} // namespace orvane::tool
