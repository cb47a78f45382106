#pragma once

#include <ctime>
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
    static constexpr double kMostLag = 0.25;

    long long periodNanoseconds;
    timespec deadline{};
    std::optional<timespec> frameBegin;
};

} // namespace headless
