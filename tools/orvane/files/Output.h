#pragma once

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

// A line for people on standard error.
void printError(std::string_view line);

// The same after the tool's name.
void tell(std::string_view line);

} // namespace orvane::tool
