#include "tools/orvane/cli/Pace.h"

#include <algorithm>

#include "tools/orvane/cli/Interrupt.h"
#include "tools/orvane/cli/Limits.h"

namespace orvane::tool {

Pace::Pace(double interval) : start(std::chrono::steady_clock::now()), interval(interval) {}

double Pace::Elapsed() const {
    return secondsSince(start);
}

bool Pace::WaitUntil(double seconds) const {
    return sleepUntil(start + secondsOf(seconds));
}

void Pace::Advance() {
    due = std::max(due + interval, Elapsed());
}

bool Pace::WaitForNext(double limit) {
    Advance();
    return WaitUntil(std::min(due, limit));
}

} // namespace orvane::tool
