#pragma once

#include <optional>
#include <string>

namespace headless {

// Where the console's lines come from. Never blocks.
class ILineSource {
public:
    ILineSource() = default;
    virtual ~ILineSource() = default;
    ILineSource(const ILineSource&) = delete;
    ILineSource& operator=(const ILineSource&) = delete;

    // Reads what is available, without waiting.
    virtual void Fill() = 0;
    // The next whole line without its newline. At the end of the input, a last line without a
    // newline counts too.
    virtual std::optional<std::string> Next() = 0;
    // The input has ended and every line was taken.
    virtual bool AtEnd() const = 0;

    // No more lines will be read: restores what it changed, such as the terminal.
    virtual void Close() {}

    // Readable when there is input; for poll().
    virtual int Descriptor() const = 0;
};

} // namespace headless
