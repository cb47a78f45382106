#pragma once

#include <cstddef>
#include <exception>
#include <string_view>

namespace orvane::tool {

// The reader of standard output has gone, as `head` does. The tool then ends quietly with status 0.
class ReaderGone final : public std::exception {
public:
    const char* what() const noexcept override { return "the reader of the output has gone"; }
};

// Writes to standard output unchanged and unbuffered, so that the reader of a pipe sees each line
// at once. ReaderGone; Failure if it cannot be written for another reason.
void writeOut(std::string_view text);

// Prints a line for people. Anything from files, the wire or the command line is escaped here, so
// that a terminal gets only text.
void printLine(std::string_view line);

// Prints a line for machines: unchanged, or escaped if standard output is a terminal.
void printData(std::string_view line);

// Prints a line for people on standard error. It replaces the status.
void printError(std::string_view line);
// The same for lines that need no escaping.
void printErrorText(std::string_view lines);

// The same, with "orvane: " in front.
void tell(std::string_view line);
// The number of lines printed on standard error, so that a drawing notices a line in between.
std::size_t errorLineCount();

// Shows a text on standard error without a line end, in place of the previous one.
void showStatus(std::string_view text);
void clearStatus();

} // namespace orvane::tool
