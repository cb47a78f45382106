#pragma once

#include <chrono>

namespace orvane::tool {

// The moments of a steady rate, in seconds since the pace was made. Who is late goes on at once,
// and does not make up for the moments that were missed.
class Pace final {
public:
    explicit Pace(double perSecond);

    double Elapsed() const;
    // When the next turn is.
    double Due() const { return due; }
    // False after an interrupt.
    bool WaitUntil(double seconds) const;
    // The turn that was due is done.
    void Advance();

private:
    const std::chrono::steady_clock::time_point start;
    const double interval;
    double due = 0;
};

} // namespace orvane::tool
