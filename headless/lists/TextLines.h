#pragma once

#include <functional>
#include <istream>
#include <stdexcept>
#include <string>

namespace headless {

// A text file of the simulator that cannot be read. what() is one line, "FILE:LINE: reason" if a
// line is at fault.
class TextFileError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Calls `parse` for every line that is not blank, without its line ending (LF or CRLF). A
// std::invalid_argument from it becomes a TextFileError that names the file and the line. `number`
// counts all lines from 1.
void forEachLine(std::istream& stream, const std::string& fileName,
                 const std::function<void(const std::string& line, int number)>& parse);

// Throws TextFileError if the file cannot be opened.
std::ifstream openTextFile(const std::string& path);

} // namespace headless
