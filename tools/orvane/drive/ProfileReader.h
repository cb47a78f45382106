#pragma once

#include <string_view>

#include "tools/orvane/drive/Problems.h"
#include "tools/orvane/drive/Profile.h"

namespace orvane::tool {

// Reads a profile from the text of its file; docs/orvane.md describes the format. All that is wrong
// is added to the problems, not only the first of it; the profile is of use only if nothing is.
Profile readProfile(std::string_view text, Problems& problems);

} // namespace orvane::tool
