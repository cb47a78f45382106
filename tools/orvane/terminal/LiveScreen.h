#pragma once

#include "tools/orvane/terminal/Terminal.h"

#include <cstddef>
#include <string>
#include <vector>

namespace orvane::tool {

// Lines on a terminal that are drawn again in place. The cursor is hidden meanwhile; the last
// drawing stays.
class LiveScreen final {
public:
    explicit LiveScreen(const Terminal& terminal);
    ~LiveScreen();
    LiveScreen(const LiveScreen&) = delete;
    LiveScreen& operator=(const LiveScreen&) = delete;

    void Draw(const std::vector<std::string>& lines);

private:
    const Terminal& terminal;
    std::size_t linesDrawn = 0;
    std::size_t columns = 0;
};

} // namespace orvane::tool
