#pragma once

#include <string>

#include "tools/orvane/files/LineFile.h"

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace orvane::tool {

// -o and --force: the file that a command writes, and whether it may overwrite an existing one.
struct OutputOption {
    std::string path;
    bool mayOverwrite = false;

    LineFile::Existing Existing() const {
        return mayOverwrite ? LineFile::Existing::Overwrite : LineFile::Existing::Keep;
    }
};

CLI::Option* declareOutput(CLI::App& command, OutputOption& output, const std::string& description);

} // namespace orvane::tool
