#include "headless/lists/CommandsFile.h"

#include <fstream>
#include <stdexcept>

#include "headless/lists/TextLines.h"

namespace headless {

namespace {

constexpr const char* kBlanks = " \t";

CommandDefinition parseLine(const std::string& line) {
    const std::size_t nameEnd = line.find_first_of(kBlanks);
    CommandDefinition definition{line.substr(0, nameEnd), {}};
    if (definition.name.empty()) {
        throw std::invalid_argument("the line begins with a blank");
    }
    if (definition.name.find('/') == std::string::npos) {
        throw std::invalid_argument("\"" + definition.name + "\" is not a command name");
    }
    const std::size_t text = line.find_first_not_of(kBlanks, definition.name.size());
    if (text != std::string::npos) {
        const std::size_t last = line.find_last_not_of(kBlanks);
        definition.description = line.substr(text, last - text + 1);
    }
    return definition;
}

} // namespace

std::vector<CommandDefinition> readCommandsFile(const std::string& path) {
    std::ifstream stream = openTextFile(path);
    return parseCommands(stream, path);
}

std::vector<CommandDefinition> parseCommands(std::istream& stream, const std::string& name) {
    std::vector<CommandDefinition> definitions;
    forEachLine(stream, name, [&](const std::string& line, int /*number*/) {
        definitions.push_back(parseLine(line));
    });
    return definitions;
}

} // namespace headless
