#pragma once

#include <chrono>

// Runs `step` until `condition` holds. False after a deadline that is ample on a loaded machine, so
// that the test fails instead of hanging.
template <class Step, class Condition>
bool driveUntil(Step step, Condition condition,
                std::chrono::seconds limit = std::chrono::seconds(60)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        step();
    }
    return true;
}
