#pragma once

#include <optional>

#include "orvane/tarnel/Output.h"
#include "tools/orvane/drive/ProfileTable.h"

namespace orvane::tool {

// Reads one [[output]] of a profile except its name. Empty if it is invalid.
std::optional<tarnel::Output> readProfileOutput(ProfileTable& table, tarnel::OutputId id);

} // namespace orvane::tool
