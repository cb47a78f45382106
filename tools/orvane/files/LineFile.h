#pragma once

#include <unistd.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::tool {

// A file that only ever holds whole lines: each is written at once, and a line that a full disk
// cuts off is removed. "-" stands for standard output.
class LineFile final {
public:
    enum class Existing { Keep, Overwrite };

    // Failure: cannot be written, or exists and must be kept.
    LineFile(const std::string& path, Existing existing);
    ~LineFile();
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;

    // Appends a line and a line feed. Failure: did not fit; ReaderGone, as for `writeOut`.
    void Append(std::string_view line);

    std::size_t Bytes() const { return bytes; }
    // For messages.
    const std::string& Name() const { return name; }
    // On a terminal, progress would mix with the lines.
    bool IsTerminal() const;

private:
    bool isStandardOutput() const { return file == STDOUT_FILENO; }
    void write(const std::string& line) const;

    const std::string name;
    int file = -1;
    std::size_t bytes = 0;
};

} // namespace orvane::tool
