#pragma once

#include <string>

#include "headless/host/SessionOptions.h"

namespace CLI {
class App;
}

namespace headless {

// Options that do something other than fly, and the system folder.
struct OtherOptions {
    std::string system{};
    bool check = false;
    bool listFunctions = false;
};

void declareOptions(CLI::App& app, SessionOptions& options, OtherOptions& other);

// Throws std::invalid_argument if the parsed command line has an option that is not declared.
void requireNoUnknownOption(const CLI::App& app);

// What a shell offers for a word: one option per line, with a tab and its meaning, or ":files".
std::string completionsOf(const CLI::App& app, const std::string& word);

} // namespace headless
