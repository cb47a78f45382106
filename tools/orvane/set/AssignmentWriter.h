#pragma once

#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "orvane/velmar/Client.h"
#include "tools/orvane/set/Assignment.h"

namespace orvane::tool {

// The result of an assignment.
struct AssignmentOutcome {
    bool isTaken = false;
    DatarefArgument argument;
    velmar::Value written;
    velmar::Value reads;
};

// Writes assignments, trying their types in turn until the dataref has the value, and reads each
// back. The client must know the datarefs' names.
std::vector<AssignmentOutcome> writeAssignments(velmar::Client& client,
                                                const std::vector<Assignment>& assignments);

// Its name, type, value, what it reads, and whether it is taken.
nlohmann::ordered_json recordOf(const AssignmentOutcome& outcome);

} // namespace orvane::tool
