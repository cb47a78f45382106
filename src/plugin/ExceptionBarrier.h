#pragma once

#include <utility>

// Runs `body` and returns its result, or `fallback` if it throws. Every function that the simulator
// calls is wrapped in it: an exception must not unwind into the simulator.
template <typename Result, typename Body>
Result withExceptionBarrier(Result fallback, Body&& body) noexcept {
    try {
        return std::forward<Body>(body)();
    } catch (...) {
        return fallback;
    }
}

template <typename Body>
void withExceptionBarrier(Body&& body) noexcept {
    try {
        std::forward<Body>(body)();
    } catch (...) { // NOLINT(bugprone-empty-catch): there is nobody to report to.
    }
}
