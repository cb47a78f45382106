#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace orvane::tool {

// The declared command line, as the help, the man page, the completions and the messages about
// unknown words see it.

// "orvane config check".
std::string fullNameOf(const CLI::App& app);

std::vector<const CLI::App*> subcommandsOf(const CLI::App& app);
// Null if there is no subcommand of this name.
const CLI::App* findSubcommand(const CLI::App& app, const std::string& name);

// The options with dashes.
std::vector<const CLI::Option*> optionsOf(const CLI::App& app);
// With those of its parent commands, which it takes as well.
std::vector<const CLI::Option*> allOptionsOf(const CLI::App& app);
// {"-n", "--count"}.
std::vector<std::string> namesOf(const CLI::Option& option);
bool takesValue(const CLI::Option& option);

// The arguments without a dash.
std::vector<const CLI::Option*> argumentsOf(const CLI::App& app);

} // namespace orvane::tool
