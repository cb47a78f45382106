#pragma once

#include <string>

namespace orvane::tool {

// A file or standard input. Reading waits for bytes until an interrupt.
class InputFile final {
public:
    // "-" stands for standard input. Failure: cannot be opened.
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // Appends the next bytes. False at the end and after an interrupt. Failure: cannot be read.
    bool ReadInto(std::string& text);
    bool IsAtEnd() const { return isAtEnd; }

private:
    const std::string name;
    int file = -1;
    bool isAtEnd = false;
};

// Reads it all. Failure: cannot be read, or an interrupt.
std::string readWholeFile(const std::string& path);

} // namespace orvane::tool
