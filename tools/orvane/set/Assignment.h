#pragma once

#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/datarefs/DatarefArgument.h"

namespace orvane::tool {

// A value for a dataref, and the types to try: one if the user gave it, else those that the value's
// text allows, float first.
struct Assignment {
    struct Candidate {
        DatarefArgument argument; // with a type
        velmar::Value value;
    };

    std::vector<Candidate> candidates;
};

// Failure: the value does not fit the type, or any type.
Assignment makeAssignment(const DatarefArgument& argument);

// Whether a dataref has taken `written`: it reads back the same, or is now nearer to it than to its
// value before, since some datarefs keep changing by themselves.
bool wasTaken(const velmar::Value& written, const velmar::Value& before,
              const velmar::Value& after);

} // namespace orvane::tool
