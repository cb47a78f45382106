#pragma once

#include <string>

namespace CLI {
class App;
}

namespace orvane::tool {

// The man page, as troff reads it: all that the help of the tool and of its commands says. Indented
// lines stay as they are; in the help of the tool a heading with such lines becomes a section.
std::string manPageOf(const CLI::App& app, const std::string& version);

} // namespace orvane::tool
