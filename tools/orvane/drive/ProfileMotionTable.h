#pragma once

#include <optional>

#include "tools/orvane/drive/Motion.h"
#include "tools/orvane/drive/ProfileTable.h"

namespace orvane::tool {

// Reads "wave" (axes only) or "steps" of an [[input]]. Empty if there is neither; errors are added
// to the problems.
std::optional<Motion> readProfileMotion(ProfileTable& table, bool isAxis);

} // namespace orvane::tool
