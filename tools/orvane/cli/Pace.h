#pragma once

#include <chrono>

namespace orvane::tool {

// The moments of a steady rate, in seconds since construction. A late turn is taken at once, and
// the missed ones are not made up.
class Pace final {
public:
    // `interval` in seconds; 0 means as fast as possible.
    explicit Pace(double interval);

    double Elapsed() const;
    // When the next turn is due.
    double Due() const { return due; }
    // False after an interrupt.
    bool WaitUntil(double seconds) const;
    // Moves on to the next turn.
    void Advance();
    // The same, and waits for it or for `limit`, whichever is first. False after an interrupt.
    bool WaitForNext(double limit);

private:
    const std::chrono::steady_clock::time_point start;
    const double interval;
    double due = 0;
};

} // namespace orvane::tool
