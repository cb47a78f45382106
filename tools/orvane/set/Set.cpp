#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "orvane/velmar/Client.h"
#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/cli/Subcommands.h"
#include "tools/orvane/datarefs/DatarefReader.h"
#include "tools/orvane/datarefs/ValueText.h"
#include "tools/orvane/files/Output.h"
#include "tools/orvane/files/RecordWriter.h"
#include "tools/orvane/set/Assignment.h"
#include "tools/orvane/set/AssignmentWriter.h"

namespace orvane::tool {

namespace {

using Texts = std::vector<std::string>;

constexpr Description kSet{
    "set", "Write datarefs",
    R"(A dataref is NAME or NAME:TYPE. The types are int, float, byte, int[N] and
float[N] (the first N elements, separated by commas). Without a type, a value is
written as a float and, if it is whole, as an int, until the dataref has it.

Elements of an array are NAME[3] or NAME[2:5], which is 2, 3 and 4, of type int
or float. The protocol writes arrays from their first element on: earlier
elements are read, and written back together with the new ones.

Each value is read back. If the simulator did not take one - because the dataref
is read-only, has another type, or is driven by the simulator itself - the exit
status is 3. If the simulator lacks one of the datarefs, nothing is written.

Examples:
  orvane set sim/time/zulu_time_sec=43200
  orvane set sim/operation/override/override_joystick:int=1 \
      sim/joystick/yoke_pitch_ratio:float=0.25
  orvane set 'kyr/external_forcescalefactor_value:int[3]=100,100,80'
  orvane set 'sim/cockpit2/engine/actuators/throttle_ratio[1]=0.5')"};

constexpr const char* kOwnArrays =
    "; the plugin's own arrays refuse a write that reaches their last element";

void refuseUnknown(velmar::Client& client, const std::vector<Assignment>& assignments) {
    std::vector<velmar::Dataref> datarefs;
    std::transform(
        assignments.begin(), assignments.end(), std::back_inserter(datarefs),
        [](const Assignment& each) { return each.candidates.front().argument.Dataref(); });
    const std::vector<std::size_t> missing = registerKnown(client, datarefs);
    for (const std::size_t place : missing) {
        reportUnknownDataref(assignments[place].candidates.front().argument.name);
    }
    if (!missing.empty()) {
        throw Failure(ExitCode::NotFoundOrRefused, "nothing was written");
    }
}

void report(const AssignmentOutcome& outcome, RecordWriter& records) {
    const DatarefArgument& dataref = outcome.argument;
    records.Write(recordOf(outcome));
    if (outcome.isTaken) {
        return;
    }
    const bool isArray = dataref.size > 0 || dataref.elements;
    const bool isOwnArray = isArray && isOwnName(dataref.name);
    tell(fmt::format("{}: {} was not taken; it reads {}{}", dataref.name,
                     valueText(outcome.written), valueText(outcome.reads),
                     isOwnArray ? kOwnArrays : ""));
}

ExitCode set(const GlobalOptions& globals, const Texts& texts) {
    std::vector<Assignment> assignments;
    for (const DatarefArgument& argument : parseAssignments(texts)) {
        assignments.push_back(makeAssignment(argument));
    }
    velmar::Client client(globals.ForClient());
    refuseUnknown(client, assignments);
    RecordWriter records(globals.OutputFormat(), {"name", "type", "value", "reads", "taken"});
    ExitCode code = ExitCode::Done;
    for (const AssignmentOutcome& outcome : writeAssignments(client, assignments)) {
        report(outcome, records);
        code = outcome.isTaken ? code : ExitCode::NotFoundOrRefused;
    }
    return code;
}

} // namespace

void addSet(Subcommands& subcommands) {
    const auto [command, texts] = subcommands.Add<Texts>(kSet, set);
    declareWords(command, texts, {"ASSIGNMENT", "NAME[:TYPE]=VALUE", "DATAREF=VALUE"});
}

} // namespace orvane::tool
