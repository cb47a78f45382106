#pragma once

#include <optional>

#include "tools/orvane/drive/Motion.h"
#include "tools/orvane/drive/ProfileTable.h"

namespace orvane::tool {

// Reads "wave", which is for axes, or "steps" of an [[input]]. Empty when neither is there; what is
// wrong is added to the problems.
std::optional<Motion> readProfileMotion(ProfileTable& table, bool isAxis);

} // namespace orvane::tool
