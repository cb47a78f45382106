#pragma once

#include <chrono>
#include <optional>

namespace headless {

// Starts frames at an even rate of real time.
//
// Deadlines are absolute, so neither the work in a frame nor late wakeups add up. After a pause of
// more than kMostLag, missed frames are skipped instead of run in a burst.
class FramePacer final {
public:
    explicit FramePacer(double framesPerSecond);

    void SetRate(double framesPerSecond);

    // Sleeps until the next frame is due, or until a signal arrives. Returns the seconds since the
    // previous frame began, or the period for the first frame after a restart.
    double WaitForNextFrame();
    // Makes the next frame due now.
    void Restart();

private:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::milliseconds kMostLag{250};

    Clock::duration period{};
    Clock::time_point deadline{};
    std::optional<Clock::time_point> frameBegin;
};

} // namespace headless
