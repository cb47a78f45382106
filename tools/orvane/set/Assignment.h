#pragma once

#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/datarefs/DatarefArgument.h"

namespace orvane::tool {

// A value for a dataref, and the ways to write it: one if the user gave a type, else those that the
// value's text allows, a float first.
struct Assignment {
    struct Way {
        DatarefArgument argument; // with a type
        velmar::Value value;
    };

    std::vector<Way> ways;
};

// Failure: the value is not of its type, or of none.
Assignment makeAssignment(const DatarefArgument& argument);

// Whether a dataref has taken `written`. It has when it reads so afterwards; or when it reads
// nearer to it than to what it was before, since some datarefs move on by themselves.
bool wasTaken(const velmar::Value& written, const velmar::Value& before,
              const velmar::Value& after);

} // namespace orvane::tool
