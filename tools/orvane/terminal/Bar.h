#pragma once

#include <string>

namespace orvane::tool {

// So many columns long: in steps of an eighth with Unicode, of a column without.
std::string bar(double columns, bool unicode);

} // namespace orvane::tool
