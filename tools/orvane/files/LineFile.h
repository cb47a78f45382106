#pragma once

#include <unistd.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::tool {

// A file that only ever has whole lines: each is written at once, and what a full disk cuts off is
// taken back. "-" stands for standard output.
class LineFile final {
public:
    enum class Existing { Keep, Overwrite };

    // Failure: cannot be written, or is there already and shall be kept.
    LineFile(const std::string& path, Existing existing);
    ~LineFile();
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;

    // The line without its end. Failure: did not fit; ReaderGone, as for `writeOut`.
    void Append(std::string_view line);

    std::size_t Bytes() const { return bytes; }
    // As messages name it.
    const std::string& Name() const { return name; }
    // Lines that show how it goes would come between its own.
    bool IsTerminal() const;

private:
    bool isStandardOutput() const { return file == STDOUT_FILENO; }
    void write(const std::string& line) const;

    const std::string name;
    int file = -1;
    std::size_t bytes = 0;
};

} // namespace orvane::tool
