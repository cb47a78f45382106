#include "tools/orvane/cli/Subcommands.h"

#include <CLI/CLI.hpp>

namespace orvane::tool {

namespace {

CLI::App& describedIn(CLI::App& parent, const Description& description) {
    CLI::App& command = *parent.add_subcommand(description.name, description.summary);
    command.group("Commands");
    command.footer(description.details);
    return command;
}

} // namespace

CLI::App& Subcommands::add(const Description& description, Work work) {
    CLI::App& command = describedIn(parent, description);
    command.callback([work = std::move(work), &toDo = chosen] { toDo = work; });
    return command;
}

Subcommands Subcommands::AddGroup(const Description& description) {
    CLI::App& group = describedIn(parent, description);
    group.require_subcommand(1);
    return {group, globals, chosen};
}

void declareWords(CLI::App& command, std::vector<std::string>& words, const Arguments& arguments) {
    command.add_option(arguments.name, words, arguments.description)
        ->type_name(arguments.type)
        ->required();
}

void declareFile(CLI::App& command, const std::string& option, std::string& file,
                 const std::string& description) {
    command.add_option(option, file, description)->type_name("FILE");
}

} // namespace orvane::tool
