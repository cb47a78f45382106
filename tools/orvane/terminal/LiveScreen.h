#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tools/orvane/terminal/DrawingMode.h"
#include "tools/orvane/terminal/Terminal.h"

namespace orvane::tool {

// Lines on a terminal that are redrawn in place, in drawing mode from the first drawing on. The
// last drawing stays. So do lines that are printed on standard error in between; the next drawing
// goes below them.
class LiveScreen final {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    explicit LiveScreen(const Terminal& terminal);

    // Whether to draw again: at most twenty times a second.
    bool IsDue(TimePoint now) const;
    void Draw(const std::vector<std::string>& lines, TimePoint now);

private:
    std::string moveToFirstLine() const;

    const Terminal& terminal;
    std::optional<DrawingMode> mode;
    std::optional<TimePoint> drawnAt;
    std::size_t linesDrawn = 0;
    std::size_t columns = 0;
    std::size_t errorLinesBefore = 0;
};

} // namespace orvane::tool
