#include <string>
#include <vector>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/datarefs/DatarefReader.h"
#include "tools/orvane/datarefs/ValueText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"

namespace orvane::tool {

namespace {

using Names = std::vector<std::string>;

constexpr Description kGet{
    "get", "Print the values of datarefs",
    R"(A dataref is NAME, NAME:TYPE or NAME:TYPE@UNIT. The types are int, float, byte,
int[N] and float[N] (the first N elements). The server does not report types, and
reading a dataref as a wrong type gives 0. Without a type, the first of float,
int, float[64] and int[64] that is not 0 is used, and of an array the elements up
to the last one that is not 0. Give the type if 0 matters.

NAME[3] is one element of an array, NAME[2:5] its elements 2, 3 and 4; their type
is int or float.

One NAME prints only its value; several print a line NAME=VALUE each, as "set"
takes it. If the simulator does not have a name, the others are printed and the
exit status is 3.

Examples:
  orvane get sim/cockpit2/controls/yoke_pitch_ratio
  orvane get sim/time/paused:int 'sim/flightmodel/position/q:float[4]'
  orvane get 'sim/flightmodel/position/q[2:4]'
  orvane get --json sim/flightmodel/position/indicated_airspeed:float@kt)"};

void print(const DatarefArgument& dataref, const velmar::Value& value, bool isAlone,
           RecordWriter& records) {
    if (records.IsWanted()) {
        Record record{{"name", dataref.name},
                      {"type", typeText(*dataref.type, dataref.size)},
                      {"value", valueJson(value)}};
        if (!dataref.unit.empty()) {
            record["unit"] = dataref.unit;
        }
        records.Write(record);
        return;
    }
    const std::string label = isAlone ? "" : dataref.text + "=";
    printLine(label + valueText(value));
}

ExitCode get(const GlobalOptions& globals, const Names& texts) {
    const std::vector<DatarefArgument> arguments = parseDatarefArguments(texts);
    velmar::Client client(globals.ForClient());
    DatarefReader reader(client, arguments);
    reader.FindTypes();
    const std::vector<velmar::Value> values = reader.Read();
    RecordWriter records(globals.OutputFormat(), {"name", "type", "value", "unit"});
    for (std::size_t i = 0; i < values.size(); ++i) {
        const DatarefArgument& dataref = reader.Known()[i];
        print(dataref, values[i], arguments.size() == 1, records);
        if (reader.IsZeroInEveryType(i)) {
            tell(fmt::format("{}: 0 in every type; give the type if you know it", dataref.name));
        } else if (dataref.size > 0 && !dataref.elements && reader.IsGuessed(i)) {
            tell(fmt::format("{}: an array; {}:{} are its elements up to the last that is not 0",
                             dataref.name, dataref.name, typeText(*dataref.type, dataref.size)));
        }
    }
    reader.ReportUnknown();
    return reader.Unknown().empty() ? ExitCode::Done : ExitCode::NotFoundOrRefused;
}

} // namespace

void addGet(Subcommands& subcommands) {
    const auto [command, names] = subcommands.Add<Names>(kGet, get);
    declareWords(command, names, {"NAME", "NAME[:TYPE][@UNIT]", "DATAREF"});
}

} // namespace orvane::tool
