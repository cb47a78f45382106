#pragma once

#include <optional>
#include <string>

namespace headless {

// Lines from a file descriptor that is read only when it has something, so that the reader never
// waits. Borrows the descriptor and leaves its flags alone: a terminal is shared with the shell.
class LineReader final {
public:
    explicit LineReader(int borrowedDescriptor) : descriptor(borrowedDescriptor) {}

    // Takes what can be read now without waiting.
    void Fill();
    // The next whole line without its newline. A last line without one counts once the end is read.
    std::optional<std::string> Next();
    // The end was read and every line was taken.
    bool AtEnd() const { return ended && pending.empty(); }

    int Descriptor() const { return descriptor; }

private:
    int descriptor;
    std::string pending;
    bool ended = false;
};

} // namespace headless
