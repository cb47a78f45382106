#pragma once

#include <optional>
#include <string>

#include "headless/host/ILineSource.h"

namespace headless {

// Whether a read would return at once.
bool isReadable(int descriptor);

// Reads lines from a file descriptor, only when it has data, so it never blocks. Borrows the
// descriptor and leaves its flags alone, because the shell shares the terminal.
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
