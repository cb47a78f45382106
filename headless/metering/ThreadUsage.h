#pragma once

#include <chrono>
#include <cstdint>

namespace headless {

// What the calling thread has used since it began.
struct ThreadUsage {
    std::chrono::nanoseconds cpu{0};
    // 0 if the process does not count allocations, see allocationsAreCounted().
    std::uint64_t allocations = 0;
    // Pages of memory that the thread touched for the first time.
    std::uint64_t pages = 0;

    // These read CPU time first or last, to exclude the cost of the reading itself.
    static ThreadUsage AtEnd();
    static ThreadUsage AtBegin();

    ThreadUsage& operator+=(const ThreadUsage& other);
    ThreadUsage operator-(const ThreadUsage& former) const;
};

// Whether libheadless-allocations.so is in the process, see CountingProcess.h.
bool allocationsAreCounted();

} // namespace headless
