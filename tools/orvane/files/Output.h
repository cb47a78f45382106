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

// Writes to standard output as it is and at once: who reads a pipe sees each line when it is
// written. ReaderGone; Failure when it cannot be written otherwise.
void writeOut(std::string_view text);

// A line for people. Names, hosts and whatever else comes from files, the wire or the command line
// are escaped here, so that they reach a terminal as text only.
void printLine(std::string_view line);

// A line for machines: as it is, and escaped where standard output is a terminal after all.
void printData(std::string_view line);

// A line for people on standard error. It takes the place of a status.
void printError(std::string_view line);

// The same after the tool's name.
void tell(std::string_view line);
// How often something was told: whoever draws on the terminal notices that a line came between.
std::size_t toldLines();

// A text on standard error that stands on a line without an end, in place of the one before.
void showStatus(std::string_view text);
void clearStatus();

} // namespace orvane::tool
