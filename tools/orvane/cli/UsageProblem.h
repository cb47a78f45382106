#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace orvane::tool {

// What is wrong with a command line that `app` could not parse, in one line: above all the word
// that nobody knows, and the known one that it looks like. Ends with where to look.
std::string usageProblem(const CLI::App& app, const CLI::ParseError& error);

// The same of a word that is not one of the subcommands of `app`.
std::string unknownCommand(const CLI::App& app, const std::string& word);

} // namespace orvane::tool
