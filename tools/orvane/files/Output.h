#pragma once

#include <exception>
#include <string_view>

namespace orvane::tool {

// Whoever read standard output has left, as `head` does. The tool ends quietly, as done.
class ReaderGone final : public std::exception {
public:
    const char* what() const noexcept override { return "nobody reads the output any more"; }
};

// Writes to standard output at once: who reads a pipe sees each line when it is written.
// ReaderGone; Failure when it cannot be written otherwise.
void writeOut(std::string_view text);

// A line on standard error, behind the tool's name.
void tell(std::string_view line);

} // namespace orvane::tool
