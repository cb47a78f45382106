#include "tools/orvane/cli/OutputOption.h"

#include <CLI/CLI.hpp>

namespace orvane::tool {

CLI::Option* declareOutput(CLI::App& command, std::string& path, bool& mayOverwrite,
                           const std::string& description) {
    CLI::Option* const output =
        command.add_option("-o,--output", path, description)->type_name("FILE");
    command.add_flag("--force", mayOverwrite, "Overwrite that file if it exists");
    return output;
}

} // namespace orvane::tool
