#pragma once

#include <string>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace orvane::tool {

// -o and --force: the file that a command writes, and whether an existing one may be overwritten.
CLI::Option* declareOutput(CLI::App& command, std::string& path, bool& mayOverwrite,
                           const std::string& description);

} // namespace orvane::tool
