#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/config/ConfigReader.h"
#include "tools/orvane/config/ConfigText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <system_error>

namespace orvane::tool {

namespace {

using config::configAsLines;
using config::configAsRecords;
using config::configColumns;
using config::ConfigReport;
using config::readConfig;

constexpr const char* kConfigFooter =
    "Exit status: 0 every line would be registered, 1 the file cannot be read, 3 a line would be\n"
    "ignored. A name that the simulator has already is refused by the simulator; that is not seen\n"
    "here.\n"
    "\n"
    "Examples:\n"
    "  orvane config check build/run/Resources/plugins/xplaneorvane_datarefs.cfg\n"
    "  echo 'kyr/lamps int_array 8' | orvane config check --json -\n"
    "  echo 'kyr/lamps int_array 0' | orvane config check - | grep ignored:\n"
    "  cd build/run && orvane config check";

constexpr const char* kDefaultFile = "./Resources/plugins/xplaneorvane_datarefs.cfg";

[[noreturn]] void cannotRead(const std::string& file, int error) {
    throw Failure(ExitCode::WrongUsage,
                  fmt::format("cannot read {}: {}", file, std::generic_category().message(error)));
}

std::string readAll(std::istream& input) {
    return {std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
}

std::string contentOf(const std::string& file) {
    if (file == "-") {
        return readAll(std::cin);
    }
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored)) {
        cannotRead(file, EISDIR);
    }
    errno = 0;
    std::ifstream input(file, std::ios::binary);
    if (!input.is_open()) {
        cannotRead(file, errno);
    }
    return readAll(input);
}

ExitCode checkConfig(const std::string& file, Format format) {
    const ConfigReport report = readConfig(contentOf(file));
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

void addConfig(CLI::App& app, const GlobalOptions& globals, Work& work) {
    CLI::App* command = app.add_subcommand("config", "Looks after the plugin's configuration file");
    command->require_subcommand(1);
    command->footer(
        "Example:\n  orvane config check build/run/Resources/plugins/xplaneorvane_datarefs.cfg");
    CLI::App* check =
        command->add_subcommand("check", "Says what the plugin would register, line by line");
    const auto file = std::make_shared<std::string>(kDefaultFile);
    check->add_option("FILE", *file, "The file; - for standard input")->capture_default_str();
    check->footer(kConfigFooter);
    check->callback([&globals, &work, file] {
        work = [&globals, file] { return checkConfig(*file, globals.OutputFormat()); };
    });
}

} // namespace orvane::tool
