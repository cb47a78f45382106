#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace orvane::tool {

// What the declared command line looks like, for whoever describes it: the help, the man page, the
// completions and the messages about words that nobody knows.

// "orvane config check".
std::string fullNameOf(const CLI::App& app);

std::vector<const CLI::App*> subcommandsOf(const CLI::App& app);
// Null if there is none of this name.
const CLI::App* findSubcommand(const CLI::App& app, const std::string& name);

// Those with dashes in front.
std::vector<const CLI::Option*> optionsOf(const CLI::App& app);
// With those of the commands that it belongs to, which may be given to it as well.
std::vector<const CLI::Option*> allOptionsOf(const CLI::App& app);
// {"-n", "--count"}.
std::vector<std::string> namesOf(const CLI::Option& option);
bool takesValue(const CLI::Option& option);

// The arguments without a dash.
std::vector<const CLI::Option*> argumentsOf(const CLI::App& app);

} // namespace orvane::tool
