#pragma once

#include "tools/orvane/cli/ExitCode.h"
#include "tools/orvane/cli/GlobalOptions.h"

#include <functional>

namespace CLI {
class App;
}

namespace orvane::tool {

// What the chosen subcommand does, once the whole command line has been read. It may throw a
// Failure or an orvane::Error, which main turns into a line and an exit status.
using Work = std::function<ExitCode()>;

// Each function below adds one subcommand to the tool. `globals` is complete when the work runs,
// and outlives it.
void addInfo(CLI::App& app, const GlobalOptions& globals, Work& work);
void addGet(CLI::App& app, const GlobalOptions& globals, Work& work);
void addSet(CLI::App& app, const GlobalOptions& globals, Work& work);
void addWatch(CLI::App& app, const GlobalOptions& globals, Work& work);
void addCommand(CLI::App& app, const GlobalOptions& globals, Work& work);
void addLatency(CLI::App& app, const GlobalOptions& globals, Work& work);
void addDrive(CLI::App& app, const GlobalOptions& globals, Work& work);
void addRecord(CLI::App& app, const GlobalOptions& globals, Work& work);
void addReplay(CLI::App& app, const GlobalOptions& globals, Work& work);

void addConfig(CLI::App& app, const GlobalOptions& globals, Work& work);
void addDump(CLI::App& app, const GlobalOptions& globals, Work& work);

} // namespace orvane::tool
