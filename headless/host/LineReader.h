#pragma once

#include <optional>
#include <string>

#include "headless/host/ILineSource.h"

namespace headless {

// Lines from a file descriptor that is read only when it has something, so that the reader never
// waits. Borrows the descriptor and leaves its flags alone: a terminal is shared with the shell.
class LineReader final : public ILineSource {
public:
    explicit LineReader(int borrowedDescriptor) : descriptor(borrowedDescriptor) {}

    void Fill() override;
    std::optional<std::string> Next() override;
    bool AtEnd() const override { return ended && pending.empty(); }
    int Descriptor() const override { return descriptor; }

private:
    int descriptor;
    std::string pending;
    bool ended = false;
};

} // namespace headless
