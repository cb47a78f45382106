#pragma once

#include <string>
#include <string_view>

namespace orvane::tool {

// Makes text from a file, the wire or the command line harmless for a terminal: bytes that are not
// UTF-8, control characters including line ends, and marks that change the direction of writing
// become \xNN. Backslashes are doubled, so that the result is unambiguous.
std::string printable(std::string_view text);

// Whether it has control characters of ASCII.
bool hasControls(std::string_view text);

} // namespace orvane::tool
