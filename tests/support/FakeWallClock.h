#pragma once

#include <cstdint>

// Stops the wall clock of this process while the object lives. It stands at the Unix epoch until it
// is set. One at a time.
//
// Works by defining `time` and `clock_gettime` in the program, before the C library's; link
// FakeWallClock.cpp into the programs that need it.
class FakeWallClock final {
public:
    FakeWallClock();
    ~FakeWallClock();
    FakeWallClock(const FakeWallClock&) = delete;
    FakeWallClock& operator=(const FakeWallClock&) = delete;

    // Nanoseconds since the Unix epoch; before it when negative.
    void Set(std::int64_t newNanoseconds) { nanoseconds = newNanoseconds; }
    std::int64_t Nanoseconds() const { return nanoseconds; }

    // How often the clock was read.
    int Reads() const { return reads; }
    void CountRead() { ++reads; }

private:
    std::int64_t nanoseconds = 0;
    int reads = 0;
};
