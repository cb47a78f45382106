#pragma once

#include "tools/orvane/drive/ProfileTable.h"

#include <optional>

#include "orvane/tarnel/Output.h"

namespace orvane::tool {

// Reads one [[output]] of a profile, all but its name. Empty when something is wrong with it.
std::optional<tarnel::Output> readProfileOutput(ProfileTable& table, tarnel::OutputId id);

} // namespace orvane::tool
