#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "tools/orvane/files/InputFile.h"

namespace orvane::tool {

// The lines of a file, or of standard input as they arrive.
class InputLines final {
public:
    // "-" stands for standard input. Failure: cannot be opened.
    explicit InputLines(const std::string& path) : file(path) {}

    // The next line without its LF or CR LF. Waits for it; empty at the end of the file and after
    // an interrupt. Failure: cannot be read.
    std::optional<std::string> Next();

    // The number of the last line returned, from 1, and whether its line end is missing.
    std::size_t Number() const { return number; }
    bool IsCut() const { return isCut; }

private:
    InputFile file;
    std::string unread;
    std::size_t begin = 0; // of what has not been returned yet
    std::size_t number = 0;
    bool isCut = false;
};

} // namespace orvane::tool
