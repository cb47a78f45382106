#pragma once

#include <chrono>
#include <cstdint>

namespace headless {

// Simulated time. Only Advance() moves it, so tests never wait. In real time, Elapsed() adds the
// time since the frame began.
class Clock final {
public:
    void Advance(double seconds) {
        now += seconds;
        ++frame;
        if (realTime) {
            frameBegin = std::chrono::steady_clock::now();
        }
    }

    // Seconds from the simulator's creation to the beginning of the frame.
    double Now() const { return now; }
    // Frames since the simulator's creation; the first frame is 1.
    std::int64_t Frame() const { return frame; }

    void SetRealTime(bool on) {
        realTime = on;
        frameBegin = std::chrono::steady_clock::now();
    }
    // Seconds from the simulator's creation to now.
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
