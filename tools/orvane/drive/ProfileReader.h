#pragma once

#include <string_view>

#include "tools/orvane/drive/Profile.h"
#include "tools/orvane/files/Problems.h"

namespace orvane::tool {

// Reads a profile from the text of its file; docs/orvane.md describes the format. Adds all errors
// to the problems, not only the first; use the profile only if there are none.
Profile readProfile(std::string_view text, Problems& problems);

} // namespace orvane::tool
