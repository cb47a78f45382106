#include "headless/program/FramePacer.h"

#include <ctime>

namespace headless {

namespace {

// std::this_thread::sleep_until() would sleep on after a signal.
void sleepUntil(std::chrono::steady_clock::time_point time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const timespec until{seconds.time_since_epoch().count(), (time - seconds).count()};
    ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
}

} // namespace

FramePacer::FramePacer(double framesPerSecond) {
    SetRate(framesPerSecond);
    Restart();
}

void FramePacer::SetRate(double framesPerSecond) {
    period = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(1.0 / framesPerSecond));
}

double FramePacer::WaitForNextFrame() {
    const auto now = Clock::now();
    if (now - deadline > kMostLag) {
        deadline = now;
    }
    sleepUntil(deadline);
    deadline += period;
    const auto begin = Clock::now();
    const auto passed = frameBegin.has_value() ? begin - *frameBegin : period;
    frameBegin = begin;
    return std::chrono::duration<double>(passed).count();
}

void FramePacer::Restart() {
    deadline = Clock::now();
    frameBegin.reset();
}

} // namespace headless
