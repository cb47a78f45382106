#include "support/FakeWallClock.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <ctime>

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

FakeWallClock* current = nullptr;

// The nanoseconds of a timespec count upwards, also before the epoch.
std::timespec fakeTime() {
    current->CountRead();
    std::timespec now{};
    now.tv_sec = current->Nanoseconds() / kNanosecondsPerSecond;
    now.tv_nsec = current->Nanoseconds() % kNanosecondsPerSecond;
    if (now.tv_nsec < 0) {
        --now.tv_sec;
        now.tv_nsec += kNanosecondsPerSecond;
    }
    return now;
}

} // namespace

FakeWallClock::FakeWallClock() {
    current = this;
}

FakeWallClock::~FakeWallClock() {
    current = nullptr;
}

extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock,
                                                                    timespec* result) noexcept {
    if (clock == CLOCK_REALTIME && current != nullptr) {
        *result = fakeTime();
        return 0;
    }
    return static_cast<int>(::syscall(SYS_clock_gettime, clock, result));
}

extern "C" __attribute__((visibility("default"))) std::time_t time(std::time_t* result) noexcept {
    std::timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    if (result != nullptr) {
        *result = now.tv_sec;
    }
    return now.tv_sec;
}
