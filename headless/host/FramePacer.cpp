#include "headless/host/FramePacer.h"

namespace headless {

namespace {

constexpr long long kNanosecondsPerSecond = 1'000'000'000;

timespec now() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time;
}

timespec later(timespec time, long long nanoseconds) {
    const long long sum = time.tv_nsec + nanoseconds;
    time.tv_sec += sum / kNanosecondsPerSecond;
    time.tv_nsec = sum % kNanosecondsPerSecond;
    return time;
}

double secondsBetween(const timespec& earlier, const timespec& time) {
    return static_cast<double>(time.tv_sec - earlier.tv_sec) +
           static_cast<double>(time.tv_nsec - earlier.tv_nsec) / kNanosecondsPerSecond;
}

} // namespace

FramePacer::FramePacer(double framesPerSecond)
    : periodNanoseconds(static_cast<long long>(kNanosecondsPerSecond / framesPerSecond)) {
    Restart();
}

void FramePacer::WaitForNextFrame() {
    if (secondsBetween(deadline, now()) > kMostLag) {
        Restart();
    }
    ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr);
    deadline = later(deadline, periodNanoseconds);
}

void FramePacer::Restart() {
    deadline = now();
}

} // namespace headless
