#include "tools/orvane/set/AssignmentWriter.h"

#include "tools/orvane/datarefs/DatarefReader.h"

#include <string>
#include <utility>

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
    std::vector<velmar::Dataref> datarefs;
    std::vector<std::string> names;
    std::vector<std::pair<std::string, velmar::Value>> values;
    for (std::size_t i = 0; i < assignments.size(); ++i) {
        if (wants(i, way)) {
            const Assignment::Way& chosen = assignments[i].ways[way];
            places.push_back(i);
            datarefs.push_back(chosen.dataref);
            names.push_back(chosen.dataref.name);
            values.emplace_back(chosen.dataref.name, chosen.value);
        }
    }
    if (places.empty()) {
        return false;
    }
    client.registerDatarefs(datarefs);
    const std::vector<velmar::Value> before = client.read(names);
    client.write(values);
    const std::vector<velmar::Value> after = client.read(names);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const velmar::Value& written = values[i].second;
        const Outcome outcome{wasTaken(written, before[i], after[i]), datarefs[i], written,
                              after[i]};
        if (way == 0 || saysMore(outcome)) {
            outcomes[places[i]] = outcome;
        }
    }
    return true;
}

} // namespace orvane::tool
