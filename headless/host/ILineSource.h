#pragma once

#include <optional>
#include <string>

namespace headless {

// Where the console's lines come from. Nobody waits in it.
class ILineSource {
public:
    ILineSource() = default;
    virtual ~ILineSource() = default;
    ILineSource(const ILineSource&) = delete;
    ILineSource& operator=(const ILineSource&) = delete;

    // Takes what can be read now without waiting.
    virtual void Fill() = 0;
    // The next whole line without its newline. A last line without one counts once the end is read.
    virtual std::optional<std::string> Next() = 0;
    // The end was read and every line was taken.
    virtual bool AtEnd() const = 0;

    // No more lines are wanted: gives back what it took, such as a terminal.
    virtual void Close() {}

    // Readable when there is something to take.
    virtual int Descriptor() const = 0;
};

} // namespace headless
