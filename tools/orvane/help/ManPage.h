#pragma once

#include <string>

namespace CLI {
class App;
}

namespace orvane::tool {

// The man page in troff: all the help of the tool and its commands. Indented lines are kept as they
// are; in the help of the tool, a heading above such lines becomes a section.
std::string manPageOf(const CLI::App& app, const std::string& version);

} // namespace orvane::tool
