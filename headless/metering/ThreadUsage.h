#pragma once

#include <chrono>
#include <cstdint>

namespace headless {

// What the calling thread has taken from the machine since it began.
struct ThreadUsage {
    std::chrono::nanoseconds cpu{0};
    // 0 when the process does not count them, see allocationsAreCounted().
    std::uint64_t allocations = 0;
    // Pages of memory that it touched for the first time.
    std::uint64_t pages = 0;

    // The processor's time is read first, or last, so that the reading itself is not in it.
    static ThreadUsage AtEnd();
    static ThreadUsage AtBegin();

    ThreadUsage& operator+=(const ThreadUsage& other);
    ThreadUsage operator-(const ThreadUsage& former) const;
};

// Whether libheadless-allocations.so is in the process, see CountingProcess.h.
bool allocationsAreCounted();

} // namespace headless
