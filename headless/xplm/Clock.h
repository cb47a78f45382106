#pragma once

#include <chrono>
#include <cstdint>

namespace headless {

// Simulated time. It stands still but for Advance(), so tests are never in a hurry. In real time,
// what passes after the beginning of the frame counts as well.
class Clock final {
public:
    void Advance(double seconds) {
        now += seconds;
        ++frame;
        if (realTime) {
            frameBegin = std::chrono::steady_clock::now();
        }
    }

    // Seconds since the simulator was made, at the beginning of the frame.
    double Now() const { return now; }
    // Frames since the simulator was made; the first frame is 1.
    std::int64_t Frame() const { return frame; }

    void SetRealTime(bool on) {
        realTime = on;
        frameBegin = std::chrono::steady_clock::now();
    }
    // Seconds since the simulator was made, now.
    double Elapsed() const { return realTime ? now + secondsInFrame() : now; }

private:
    double secondsInFrame() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - frameBegin).count();
    }

    double now = 0.0;
    std::int64_t frame = 0;
    std::chrono::steady_clock::time_point frameBegin{};
    bool realTime = false;
};

} // namespace headless
