#pragma once

#include <ctime>
#include <optional>

namespace headless {

// Lets frames begin at an even rate of real time.
//
// Deadlines are absolute, so neither the work in a frame nor late waking adds up. After a pause
// of more than kMostLag the missed frames are left out instead of being run in a burst.
class FramePacer final {
public:
    explicit FramePacer(double framesPerSecond);

    void SetRate(double framesPerSecond);

    // Sleeps until the next frame is due; less when a signal comes. Returns the seconds since the
    // frame before began, or the period for the first frame after a restart.
    double WaitForNextFrame();
    // The next frame is due now.
    void Restart();

private:
    static constexpr double kMostLag = 0.25;

    long long periodNanoseconds;
    timespec deadline{};
    std::optional<timespec> frameBegin;
};

} // namespace headless
