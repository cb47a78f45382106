#pragma once

#include <string>

namespace orvane::tool {

// A bar of this many columns, in steps of an eighth with Unicode and of a whole column without.
std::string bar(double columns, bool unicode);

} // namespace orvane::tool
