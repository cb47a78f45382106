#include <string>
#include <vector>

#include <CLI/App.hpp>

#include "tools/orvane/cli/CommandTree.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/cli/UsageProblem.h"
#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

using Words = std::vector<std::string>;

constexpr Description kHelp{"help", "Show the options of a command, and examples",
                            R"(Examples:
  orvane help
  orvane help command hold)"};

ExitCode help(const CLI::App& app, const Words& words) {
    const CLI::App* command = &app;
    for (const std::string& word : words) {
        const CLI::App* const next = findSubcommand(*command, word);
        if (next == nullptr) {
            throw Failure(ExitCode::WrongUsage, unknownCommand(*command, word));
        }
        command = next;
    }
    writeOut(command->get_formatter()->make_help(command, fullNameOf(*command),
                                                 CLI::AppFormatMode::Normal));
    return ExitCode::Done;
}

} // namespace

void addHelp(Subcommands& subcommands) {
    const CLI::App& app = subcommands.Parent();
    const auto [command, words] =
        subcommands.Add<Words>(kHelp, [&app](const GlobalOptions& /*globals*/,
                                             const Words& chosen) { return help(app, chosen); });
    command.add_option("COMMAND", words, "The command; without one, the tool")
        ->type_name("COMMAND");
}

} // namespace orvane::tool
