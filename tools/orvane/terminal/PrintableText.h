#pragma once

#include <string>
#include <string_view>

namespace orvane::tool {

// Text from a file, the wire or the command line, made harmless for a terminal: bytes that are not
// UTF-8, control characters, line ends among them, and marks that change the direction of writing
// are written as \xNN, and a backslash is doubled, so that the bytes can be told from the result.
// Everything else stays as it is.
std::string printable(std::string_view text);

} // namespace orvane::tool
