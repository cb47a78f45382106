#pragma once

#include <cstdint>

namespace headless {

// Simulated time. It stands still but for Advance(), so tests are never in a hurry.
class Clock final {
public:
    void Advance(double seconds) {
        now += seconds;
        ++frame;
    }

    // Seconds since the simulator was made.
    double Now() const { return now; }
    // Frames since the simulator was made; the first frame is 1.
    std::int64_t Frame() const { return frame; }

private:
    double now = 0.0;
    std::int64_t frame = 0;
};

} // namespace headless
