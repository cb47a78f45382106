#include "tools/orvane/find/ListOptions.h"

#include <CLI/App.hpp>

namespace orvane::tool {

void declareLists(CLI::App& command, ListFiles& files) {
    command.add_option("--datarefs", files.datarefs, "A list laid out as DataRefs.txt")
        ->type_name("FILE");
    command.add_option("--commands", files.commands, "A list laid out as Commands.txt")
        ->type_name("FILE");
}

} // namespace orvane::tool
