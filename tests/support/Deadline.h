#pragma once

#include <chrono>

// Runs `step` until `condition` holds. False when it does not within a time that is ample on a
// loaded machine; the test then fails instead of hanging.
template <class Step, class Condition>
bool driveUntil(Step step, Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        step();
    }
    return true;
}
