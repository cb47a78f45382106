#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace orvane::tool {

// An error in a user's file, and its place. A column of 0 stands for the whole line.
struct Problem {
    std::size_t line = 0;
    std::size_t column = 0;
    std::string reason;
};

using Problems = std::vector<Problem>;

// "FILE:LINE:COLUMN: reason", or "FILE:LINE: reason".
std::string problemText(const std::string& file, const Problem& problem);

// A line for each in the order of their places, escaped for a terminal.
std::string problemLines(const std::string& file, Problems problems);

// Prints these lines on standard error.
void printProblems(const std::string& file, const Problems& problems);

} // namespace orvane::tool
