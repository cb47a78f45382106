#include <stdexcept>
#include <string>

#include "headless/scenario/Statements.h"
#include "headless/xplm/menus/MenuTable.h"

namespace headless {

namespace {

using Operation = void (CommandTable::*)(XPLMCommandRef);

Command& commandIn(Flight& flight, const std::string& name) {
    Command* command = flight.Session().Simulator().Commands().Lookup(name);
    if (command == nullptr) {
        throw std::invalid_argument("no such command: " + name);
    }
    return *command;
}

Statement toCommand(Arguments& arguments, Operation operation) {
    const std::string name = arguments.Rest("the command");
    return acting(arguments, [name, operation](Flight& flight) {
        (flight.Session().Simulator().Commands().*operation)(&commandIn(flight, name));
    });
}

std::string describeCounts(const std::string& prefix, const PhaseCounts& counts) {
    return " " + prefix + "begin=" + std::to_string(counts[xplm_CommandBegin]) + " " + prefix +
           "continue=" + std::to_string(counts[xplm_CommandContinue]) + " " + prefix +
           "end=" + std::to_string(counts[xplm_CommandEnd]);
}

std::string countHandlers(Flight& flight) {
    const CommandTable& commands = flight.Session().Simulator().Commands();
    std::size_t count = 0;
    for (const std::string& name : commands.Names()) {
        count += commands.Lookup(name)->handlers.size();
    }
    return "handlers " + std::to_string(count);
}

} // namespace

Statement readPress(Arguments& arguments) {
    return toCommand(arguments, &CommandTable::Once);
}

Statement readBegin(Arguments& arguments) {
    return toCommand(arguments, &CommandTable::Begin);
}

Statement readEnd(Arguments& arguments) {
    return toCommand(arguments, &CommandTable::End);
}

Statement readCommand(Arguments& arguments) {
    const std::string how = arguments.Word("once, begin or end");
    if (how == "once") {
        return readPress(arguments);
    }
    if (how == "begin") {
        return readBegin(arguments);
    }
    if (how == "end") {
        return readEnd(arguments);
    }
    throw std::invalid_argument("a command is run once, begun or ended, not \"" + how + "\"");
}

Statement readEvents(Arguments& arguments) {
    const std::string name = arguments.Rest("the command");
    return reporting(arguments, [name](Flight& flight) {
        const Command& counted = commandIn(flight, name);
        return name + describeCounts("", counted.passedOn) +
               describeCounts("pressed-", counted.pressed);
    });
}

Statement readHandlers(Arguments& arguments) {
    return reporting(arguments, &countHandlers);
}

Statement readClick(Arguments& arguments) {
    const std::string path = arguments.Rest("the menu item");
    return acting(arguments,
                  [path](Flight& flight) { flight.Session().Simulator().Menus().Click(path); });
}

} // namespace headless
