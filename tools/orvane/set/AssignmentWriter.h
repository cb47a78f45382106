#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "orvane/velmar/Client.h"
#include "tools/orvane/set/Assignment.h"

namespace orvane::tool {

// Writes assignments, trying their types in turn until the dataref has the value, and reads each
// back. Borrows the client, which must know the datarefs' names, and the assignments.
class AssignmentWriter final {
public:
    // The result of an assignment.
    struct Outcome {
        bool isTaken = false;
        DatarefArgument argument;
        velmar::Value written;
        velmar::Value reads;
    };

    AssignmentWriter(velmar::Client& client, const std::vector<Assignment>& assignments);

    std::vector<Outcome> Write();

private:
    bool needs(std::size_t index, std::size_t candidate) const;
    bool write(std::size_t candidate);
    std::vector<std::string> registerAll(const std::vector<DatarefArgument>& arguments);

    velmar::Client& client;
    const std::vector<Assignment>& assignments;
    std::vector<Outcome> outcomes;
};

// Its name, type, value, what it reads, and whether it is taken.
nlohmann::ordered_json recordOf(const AssignmentWriter::Outcome& outcome);

} // namespace orvane::tool
