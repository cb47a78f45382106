#pragma once

#include <functional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace orvane::tool {

// What a shell offers for the last of these words, which follow the tool's name; it may be empty.
// One line per candidate, with a tab and its meaning, and ":files" where file names fit.
//
// The possible values of an option or argument are in its type name: "FILE|sine|square" means a
// file or one of two words. Other words in capitals are only descriptions; `offerMore`, if there is
// one, is asked for the lines of each, with what has been typed.
std::string completionsOf(
    const CLI::App& app, const std::vector<std::string>& words,
    const std::function<std::string(const std::string&, const std::string&)>& offerMore = {});

} // namespace orvane::tool
