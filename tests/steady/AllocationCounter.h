#pragma once

#include <cstddef>

// What this thread took from the heap with `new`, the simulator's part of it included.
//
// Everything since its start counts; a test looks at the difference.
struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;

    static Allocations SoFar();

    // What `action` takes.
    template <typename Action>
    static Allocations Of(Action&& action) {
        const Allocations before = SoFar();
        action();
        const Allocations after = SoFar();
        return {after.count - before.count, after.bytes - before.bytes};
    }
};
