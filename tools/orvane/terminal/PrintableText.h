#pragma once

#include <string>
#include <string_view>

namespace orvane::tool {

// Text from a file or the wire, fit for a terminal: what is no printable ASCII is written as \xNN,
// and a backslash twice.
std::string printable(std::string_view text);

} // namespace orvane::tool
