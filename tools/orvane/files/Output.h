#pragma once

#include <cstddef>
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

// A line on standard error, after the tool's name. It takes the place of a status.
void tell(std::string_view line);
// How often something was told: whoever draws on the terminal notices that a line came between.
std::size_t toldLines();

// A text on standard error that stands on a line without an end, in place of the one before.
void showStatus(std::string_view text);
void clearStatus();

} // namespace orvane::tool
