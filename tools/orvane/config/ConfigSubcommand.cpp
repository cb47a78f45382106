#include <string>

#include <CLI/App.hpp>
#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/config/ConfigReader.h"
#include "tools/orvane/config/ConfigText.h"
#include "tools/orvane/files/InputFile.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"

namespace orvane::tool {

namespace {

using config::configAsLines;
using config::configAsRecords;
using config::configColumns;
using config::ConfigReport;
using config::readConfig;

constexpr Description kConfig{"config", "Check the plugin's configuration file",
                              R"(Examples:
  orvane config check build/run/Resources/plugins/xplaneorvane_datarefs.cfg)"};

constexpr Description kCheck{
    "check", "Show what the plugin would register, line by line",
    R"(Exit status 3 if a line would be ignored. The simulator refuses a name that it
already has; this check cannot see that.

Examples:
  orvane config check build/run/Resources/plugins/xplaneorvane_datarefs.cfg
  echo 'kyr/lamps int_array 8' | orvane config check --json -
  echo 'kyr/lamps int_array 0' | orvane config check - | grep ignored:
  cd build/run && orvane config check)"};

struct CheckOptions {
    std::string file = "./Resources/plugins/xplaneorvane_datarefs.cfg";
};

ExitCode check(const GlobalOptions& globals, const CheckOptions& options) {
    const std::string& file = options.file;
    const Format format = globals.OutputFormat();
    const ConfigReport report = readConfig(readWholeFile(file));
    if (format == Format::Text) {
        for (const std::string& line : configAsLines(report, file)) {
            printLine(line);
        }
    }
    RecordWriter writer(format, configColumns());
    for (const Record& record : configAsRecords(report, file)) {
        writer.Write(record);
    }
    return report.IgnoredCount() == 0 ? ExitCode::Done : ExitCode::NotFoundOrRefused;
}

} // namespace

void addConfig(Subcommands& subcommands) {
    Subcommands config = subcommands.AddGroup(kConfig);
    const auto [command, options] = config.Add<CheckOptions>(kCheck, check);
    command.add_option("FILE", options.file, "- for standard input")
        ->type_name("FILE")
        ->capture_default_str();
}

} // namespace orvane::tool
