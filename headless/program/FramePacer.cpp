#include "headless/program/FramePacer.h"

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

long long periodOf(double framesPerSecond) {
    return static_cast<long long>(kNanosecondsPerSecond / framesPerSecond);
}

} // namespace

FramePacer::FramePacer(double framesPerSecond) : periodNanoseconds(periodOf(framesPerSecond)) {
    Restart();
}

void FramePacer::SetRate(double framesPerSecond) {
    periodNanoseconds = periodOf(framesPerSecond);
}

double FramePacer::WaitForNextFrame() {
    if (secondsBetween(deadline, now()) > kMostLag) {
        deadline = now();
    }
    ::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr);
    deadline = later(deadline, periodNanoseconds);
    const timespec begin = now();
    const double period = static_cast<double>(periodNanoseconds) / kNanosecondsPerSecond;
    const double passed = frameBegin.has_value() ? secondsBetween(*frameBegin, begin) : period;
    frameBegin = begin;
    return passed;
}

void FramePacer::Restart() {
    deadline = now();
    frameBegin.reset();
}

} // namespace headless
