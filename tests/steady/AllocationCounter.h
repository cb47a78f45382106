#pragma once

#include <cstddef>

// What this thread has allocated with `new`, including the simulator's allocations.
//
// Counts from the start of the thread; tests compare.
struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;

    static Allocations SoFar();

    // What `action` allocates.
    template <typename Action>
    static Allocations Of(Action&& action) {
        const Allocations before = SoFar();
        action();
        const Allocations after = SoFar();
        return {after.count - before.count, after.bytes - before.bytes};
    }
};
