#include "tools/orvane/find/ListOptions.h"

#include "tools/orvane/cli/Subcommands.h"

namespace orvane::tool {

void declareLists(CLI::App& command, ListFiles& files) {
    declareFile(command, "--datarefs", files.datarefs, "A list laid out as DataRefs.txt");
    declareFile(command, "--commands", files.commands, "A list laid out as Commands.txt");
}

} // namespace orvane::tool
