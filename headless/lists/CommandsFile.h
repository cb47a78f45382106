#pragma once

#include <istream>
#include <string>
#include <vector>

namespace headless {

struct CommandDefinition {
    std::string name;
    std::string description;
};

// Reads the simulator's own list of commands (Commands.txt): a name, white space, and a description
// to the end of the line, which may be missing. Blank lines are skipped.
//
// A name without a "/" is not a command of the simulator and throws TextFileError with file and
// line. So does a line that begins with a blank.
std::vector<CommandDefinition> readCommandsFile(const std::string& path);
// `name` is the file's name in errors.
std::vector<CommandDefinition> parseCommands(std::istream& stream, const std::string& name);

} // namespace headless
