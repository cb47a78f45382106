#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "tools/orvane/record/Recording.h"
#include "tools/orvane/serve/Hub.h"

namespace orvane::tool {

// Gives the rows of a recording to the hub at their pace, from when the first page has opened, and
// then the last row to every page that comes. Borrows both.
class ReplayReader final {
public:
    ReplayReader(const Recording& recording, Hub& hub);

    // Until an interrupt.
    void Run();

private:
    void takeUnion();
    void show(std::size_t row);

    const Recording& recording;
    Hub& hub;
    std::optional<std::uint64_t> generation;
    std::optional<std::size_t> shown; // the last row
};

} // namespace orvane::tool
