#include "tools/orvane/set/AssignmentWriter.h"

#include <cstddef>
#include <string>

#include <nlohmann/json.hpp>

#include "tools/orvane/datarefs/DatarefReader.h"
#include "tools/orvane/datarefs/ValueText.h"

namespace orvane::tool {

namespace {

// A 0 reads back with any type, so it is written with all of them.
bool needs(const Assignment& assignment, const AssignmentOutcome& outcome, std::size_t candidate) {
    const std::vector<Assignment::Candidate>& candidates = assignment.candidates;
    return candidate < candidates.size() && (!outcome.isTaken || isZero(candidates[0].value));
}

// A 0 counts as taken only if it reads back as 0 in every type. If another value fails in every
// type, the type that reads as something other than 0 is reported.
bool isBetter(const AssignmentOutcome& outcome) {
    return isZero(outcome.written) ? !outcome.isTaken : outcome.isTaken || !isZero(outcome.reads);
}

// Returns their names.
std::vector<std::string> registerAll(velmar::Client& client,
                                     const std::vector<DatarefArgument>& arguments) {
    std::vector<velmar::Dataref> datarefs;
    std::vector<std::string> names;
    for (const DatarefArgument& argument : arguments) {
        datarefs.push_back(argument.Dataref());
        names.push_back(datarefs.back().name);
    }
    client.registerDatarefs(datarefs);
    return names;
}

// Writes all that need this type. False if there are none.
bool write(velmar::Client& client, const std::vector<Assignment>& assignments,
           std::size_t candidate, std::vector<AssignmentOutcome>& outcomes) {
    std::vector<std::size_t> places;
    std::vector<DatarefArgument> arguments;
    std::vector<velmar::Value> values;
    for (std::size_t i = 0; i < assignments.size(); ++i) {
        if (needs(assignments[i], outcomes[i], candidate)) {
            places.push_back(i);
            arguments.push_back(assignments[i].candidates[candidate].argument);
            values.push_back(assignments[i].candidates[candidate].value);
        }
    }
    if (places.empty()) {
        return false;
    }
    const std::vector<std::string> names = registerAll(client, arguments);
    const std::vector<velmar::Value> before = client.read(names);
    client.write(wholeValues(arguments, values, before));
    const std::vector<velmar::Value> after = client.read(names);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const velmar::Value reads = arguments[i].ValueIn(after[i]);
        const AssignmentOutcome outcome{wasTaken(values[i], arguments[i].ValueIn(before[i]), reads),
                                        arguments[i], values[i], reads};
        if (candidate == 0 || isBetter(outcome)) {
            outcomes[places[i]] = outcome;
        }
    }
    return true;
}

} // namespace

std::vector<AssignmentOutcome> writeAssignments(velmar::Client& client,
                                                const std::vector<Assignment>& assignments) {
    std::vector<AssignmentOutcome> outcomes(assignments.size());
    for (std::size_t candidate = 0; write(client, assignments, candidate, outcomes); ++candidate) {
    }
    return outcomes;
}

nlohmann::ordered_json recordOf(const AssignmentOutcome& outcome) {
    const DatarefArgument& dataref = outcome.argument;
    return {{"name", dataref.name},
            {"type", typeText(*dataref.type, dataref.size)},
            {"value", valueJson(outcome.written)},
            {"reads", valueJson(outcome.reads)},
            {"taken", outcome.isTaken}};
}

} // namespace orvane::tool
