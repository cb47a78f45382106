#pragma once

#include "tools/demo/Panel.h"
#include "tools/demo/TarnelWire.h"
#include "tools/demo/VelmarPanel.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace demo {

// Where the run stands.
struct Progress {
    double seconds = 0.0;
    double secondsWanted = 0.0;
    std::size_t exchanges = 0;
    std::chrono::microseconds lastRoundTrip{};
};

// Shows on stdout what goes in and what comes back.
//
// On a terminal one table is redrawn in place; elsewhere a few lines, two for the directions of the
// panel and one for the second client, are added twice a second. Show() may be called as often as
// one likes. Borrows the panel.
class LiveTable final {
public:
    explicit LiveTable(const Panel& shownPanel);

    // `gauges` are the values of the second client.
    void Show(const Progress& progress, std::span<const DataItem> sent, const OutputStream& stream,
              const std::vector<ShownValue>& gauges);

    // What was shown last, whenever it was; then the table is left alone.
    void Finish();

private:
    using Clock = std::chrono::steady_clock;

    // One per row of the panel; empty where the row has no control or no output.
    struct Cells {
        std::vector<std::string> sent;
        std::vector<std::string> received;
    };

    Cells cellsOf(std::span<const DataItem> sent, const OutputStream& stream) const;
    void draw();
    void drawInPlace();
    void rowInPlace(const ShownValue& row);
    void drawLines();
    void explain() const;
    void line(const std::string& text, bool emphasised);

    const Panel& panel;
    const bool terminal;
    const bool bold;
    std::size_t width = 0;

    Progress shown;
    Cells cells;
    std::vector<ShownValue> gauges;
    std::optional<Clock::time_point> drawnAt;
    bool stale = false;
    std::size_t linesDrawn = 0;
};

} // namespace demo
