#include "tools/orvane/set/AssignmentWriter.h"

#include <nlohmann/json.hpp>

#include "tools/orvane/datarefs/DatarefReader.h"
#include "tools/orvane/datarefs/ValueText.h"

namespace orvane::tool {

namespace {

// A 0 counts as taken only if it reads back as 0 in every type. If another value fails in every
// type, the type that reads as something other than 0 is reported.
bool isBetterOutcome(const AssignmentWriter::Outcome& outcome) {
    return isZero(outcome.written) ? !outcome.isTaken : outcome.isTaken || !isZero(outcome.reads);
}

} // namespace

AssignmentWriter::AssignmentWriter(velmar::Client& client,
                                   const std::vector<Assignment>& assignments)
    : client(client), assignments(assignments), outcomes(assignments.size()) {}

std::vector<AssignmentWriter::Outcome> AssignmentWriter::Write() {
    for (std::size_t candidate = 0; write(candidate); ++candidate) {
    }
    return outcomes;
}

// A 0 reads back with any type, so it is written with all of them.
bool AssignmentWriter::needs(std::size_t index, std::size_t candidate) const {
    const std::vector<Assignment::Candidate>& candidates = assignments[index].candidates;
    return candidate < candidates.size() &&
           (!outcomes[index].isTaken || isZero(candidates[0].value));
}

// Writes all that need this type. False if there are none.
bool AssignmentWriter::write(std::size_t candidate) {
    std::vector<std::size_t> places;
    std::vector<DatarefArgument> arguments;
    std::vector<velmar::Value> values;
    for (std::size_t i = 0; i < assignments.size(); ++i) {
        if (needs(i, candidate)) {
            places.push_back(i);
            arguments.push_back(assignments[i].candidates[candidate].argument);
            values.push_back(assignments[i].candidates[candidate].value);
        }
    }
    if (places.empty()) {
        return false;
    }
    const std::vector<std::string> names = registerAll(arguments);
    const std::vector<velmar::Value> before = client.read(names);
    client.write(wholeValues(arguments, values, before));
    const std::vector<velmar::Value> after = client.read(names);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const velmar::Value reads = arguments[i].ValueIn(after[i]);
        const Outcome outcome{wasTaken(values[i], arguments[i].ValueIn(before[i]), reads),
                              arguments[i], values[i], reads};
        if (candidate == 0 || isBetterOutcome(outcome)) {
            outcomes[places[i]] = outcome;
        }
    }
    return true;
}

std::vector<std::string> AssignmentWriter::registerAll(
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

nlohmann::ordered_json recordOf(const AssignmentWriter::Outcome& outcome) {
    const DatarefArgument& dataref = outcome.argument;
    return {{"name", dataref.name},
            {"type", typeText(*dataref.type, dataref.size)},
            {"value", valueJson(outcome.written)},
            {"reads", valueJson(outcome.reads)},
            {"taken", outcome.isTaken}};
}

} // namespace orvane::tool
