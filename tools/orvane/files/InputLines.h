#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "tools/orvane/files/InputFile.h"

namespace orvane::tool {

// The lines of a file, or of standard input as they come.
class InputLines final {
public:
    // "-" stands for standard input. Failure: cannot be opened.
    explicit InputLines(const std::string& path) : file(path) {}

    // The next line without its end, which may be CR LF. Waits for it; empty at the end of the file
    // and after an interrupt. Failure: cannot be read.
    std::optional<std::string> Next();

    // Of the line that was returned last: its number, from 1 on, and whether it had no end.
    std::size_t Number() const { return number; }
    bool IsCut() const { return isCut; }

private:
    InputFile file;
    std::string unread;
    std::size_t begin = 0; // of what has not been returned
    std::size_t number = 0;
    bool isCut = false;
};

} // namespace orvane::tool
