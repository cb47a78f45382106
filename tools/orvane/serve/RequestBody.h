#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/set/Assignment.h"

namespace orvane::tool {

// What pages may ask for, read from the bodies of their requests. All of these throw a Failure with
// a short text if a body is not as it must be.

inline constexpr std::size_t kMostNames = 256;

// The datarefs to read and the commands to observe:
// {"id":"...","names":["NAME[:TYPE][@UNIT]"],"commands":["NAME"]}
struct Wanted {
    std::string id;
    std::vector<DatarefArgument> datarefs;
    std::vector<std::string> commands;
};
Wanted parseWanted(std::string_view body);

// {"assignment":"NAME[:TYPE]=VALUE"}, checked like those of "orvane set".
Assignment parseSet(std::string_view body);

// {"id":"...","command":"NAME"}
struct CommandRequest {
    std::string id;
    std::string command;
};
CommandRequest parseCommand(std::string_view body);

} // namespace orvane::tool
