#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace orvane::tool {

// One line on why `app` could not parse a command line: above all the unknown word, and the known
// one that it resembles. Ends with a pointer to the help.
std::string usageProblem(const CLI::App& app, const CLI::ParseError& error);

// The same for a word that is not a subcommand of `app`.
std::string unknownCommand(const CLI::App& app, const std::string& word);

} // namespace orvane::tool
