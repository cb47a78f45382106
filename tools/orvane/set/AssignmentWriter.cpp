#include "tools/orvane/set/AssignmentWriter.h"

#include "tools/orvane/datarefs/DatarefReader.h"

namespace orvane::tool {

namespace {

// A 0 is only taken if no way has shown that something else stays. Of the ways in which another
// value failed, the one is told that shows what the dataref is.
bool saysMore(const AssignmentWriter::Outcome& outcome) {
    return isZero(outcome.written) ? !outcome.isTaken : outcome.isTaken || !isZero(outcome.reads);
}

} // namespace

AssignmentWriter::AssignmentWriter(velmar::Client& client,
                                   const std::vector<Assignment>& assignments)
    : client(client), assignments(assignments), outcomes(assignments.size()) {}

std::vector<AssignmentWriter::Outcome> AssignmentWriter::Write() {
    for (std::size_t way = 0; write(way); ++way) {
    }
    return outcomes;
}

// A 0 reads back whatever the type is, so that it takes every way.
bool AssignmentWriter::wants(std::size_t index, std::size_t way) const {
    const std::vector<Assignment::Way>& ways = assignments[index].ways;
    return way < ways.size() && (!outcomes[index].isTaken || isZero(ways[0].value));
}

// Writes all that want this way. False when there are none.
bool AssignmentWriter::write(std::size_t way) {
    std::vector<std::size_t> places;
    std::vector<DatarefArgument> arguments;
    std::vector<velmar::Value> values;
    for (std::size_t i = 0; i < assignments.size(); ++i) {
        if (wants(i, way)) {
            places.push_back(i);
            arguments.push_back(assignments[i].ways[way].argument);
            values.push_back(assignments[i].ways[way].value);
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
        if (way == 0 || saysMore(outcome)) {
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

} // namespace orvane::tool
