#include <map>
#include <string>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/datarefs/ValueText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/find/ListOptions.h"
#include "tools/orvane/find/NameLists.h"
#include "tools/orvane/find/Pattern.h"
#include "tools/orvane/find/PresentValues.h"

namespace orvane::tool {

namespace {

constexpr Description kFind{
    "find", "Find datarefs and commands in the simulator's lists",
    R"(PATTERN is a part of a name or of a description, or a glob for whole names; the
case of letters does not matter. The lists are DataRefs.txt and Commands.txt in
Resources/plugins of the newest simulator that is installed, or the files given.

If a server answers within a second, the present values of the first 100 datarefs
are shown: numbers, and arrays of at most 64 of them. Exit status 3: nothing
matches.

Examples:
  orvane find gear_handle
  orvane find 'sim/*/beacon*' --json
  orvane find "landing light" --datarefs DataRefs.txt)"};

struct FindOptions {
    std::string pattern;
    ListFiles files;
    bool namesOnly = false;
};

// The entries of `all` that match.
template <typename Entry>
std::vector<Entry> matchingOf(const std::vector<Entry>& all, const Pattern& pattern) {
    std::vector<Entry> found;
    for (const Entry& each : all) {
        if (pattern.Matches(each.name, each.description)) {
            found.push_back(each);
        }
    }
    return found;
}

NameLists readLists(const FindOptions& options) {
    const ListFiles files = options.files.IsEmpty() ? installedLists() : options.files;
    if (files.IsEmpty()) {
        throw Failure(ExitCode::WrongUsage,
                      "no installed simulator has lists of names; give one with --datarefs or "
                      "--commands");
    }
    NameLists lists = NameLists::Read(files);
    for (const std::string& warning : lists.warnings) {
        printError(warning);
    }
    const Pattern pattern(options.pattern);
    return {matchingOf(lists.datarefs, pattern), matchingOf(lists.commands, pattern), {}};
}

void printFields(const std::vector<std::string>& fields) {
    std::string line;
    for (const std::string& field : fields) {
        line += field.empty() ? "" : (line.empty() ? "" : "  ") + field;
    }
    printLine(line);
}

void printNames(const NameLists& found) {
    for (const ListedDataref& each : found.datarefs) {
        printLine(each.name);
    }
    for (const ListedCommand& each : found.commands) {
        printLine(each.name);
    }
}

void printText(const NameLists& found, const std::map<std::string, velmar::Value>& values) {
    for (const ListedDataref& each : found.datarefs) {
        const auto value = values.find(each.name);
        printFields({each.name, each.type + (each.isWritable ? ", writable" : ""), each.units,
                     value == values.end() ? "" : "= " + valueText(value->second),
                     each.description});
    }
    for (const ListedCommand& each : found.commands) {
        printFields({each.name, "command", each.description});
    }
}

void writeRecords(const NameLists& found, const std::map<std::string, velmar::Value>& values,
                  RecordWriter& records) {
    for (const ListedDataref& each : found.datarefs) {
        Record record{{"name", each.name},
                      {"type", each.type},
                      {"writable", each.isWritable},
                      {"units", each.units},
                      {"description", each.description}};
        if (const auto value = values.find(each.name); value != values.end()) {
            record["value"] = valueJson(value->second);
        }
        records.Write(record);
    }
    for (const ListedCommand& each : found.commands) {
        records.Write(
            {{"name", each.name}, {"type", "command"}, {"description", each.description}});
    }
}

ExitCode find(const GlobalOptions& globals, const FindOptions& options) {
    const NameLists found = readLists(options);
    if (found.datarefs.empty() && found.commands.empty()) {
        throw Failure(ExitCode::NotFoundOrRefused,
                      fmt::format("nothing matches \"{}\"", options.pattern));
    }
    if (options.namesOnly) {
        printNames(found);
        return ExitCode::Done;
    }
    const auto values = presentValues(globals, found.datarefs);
    RecordWriter records(globals.OutputFormat(),
                         {"name", "type", "writable", "units", "description", "value"});
    if (records.IsWanted()) {
        writeRecords(found, values, records);
    } else {
        printText(found, values);
    }
    return ExitCode::Done;
}

} // namespace

void addFind(Subcommands& subcommands) {
    const auto [command, options] = subcommands.Add<FindOptions>(kFind, find);
    command.add_option("PATTERN", options.pattern, "What to look for")->required();
    declareLists(command, options.files);
    command.add_flag("--names", options.namesOnly, "Print only the names");
}

} // namespace orvane::tool
