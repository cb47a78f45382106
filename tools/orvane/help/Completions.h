#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace orvane::tool {

// What a shell offers for the last of these words, which may be empty, after the tool's name: a
// line for each candidate, with a tab and what it means, and the line ":files" where names of files
// fit.
//
// The words that an option or argument can have are in its type name: "FILE|sine|square" stands for
// a file or one of two words. What is in capitals is only described.
std::string completionsOf(const CLI::App& app, const std::vector<std::string>& words);

} // namespace orvane::tool
