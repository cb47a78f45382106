#include "HeldCommands.h"

namespace orvane::detail {

void HeldCommands::end(const std::string& name) {
    const auto command = commands.find(name);
    if (command == commands.end()) {
        return;
    }
    Times& times = command->second;
    times.begun -= times.begun > 0 ? 1 : 0;
    if (times.begun == 0 && times.perhaps == 0) {
        commands.erase(command);
    }
}

std::vector<std::string> HeldCommands::names() const {
    std::vector<std::string> names;
    for (const auto& [name, times] : commands) {
        names.push_back(name);
    }
    return names;
}

} // namespace orvane::detail
