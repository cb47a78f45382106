#include "tools/orvane/cli/OutputOption.h"

#include <CLI/App.hpp>

namespace orvane::tool {

CLI::Option* declareOutput(CLI::App& command, OutputOption& output,
                           const std::string& description) {
    CLI::Option* const option =
        command.add_option("-o,--output", output.path, description)->type_name("FILE");
    command.add_flag("--force", output.mayOverwrite, "Overwrite that file if it exists");
    return option;
}

} // namespace orvane::tool
