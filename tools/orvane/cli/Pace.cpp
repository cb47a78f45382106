#include "tools/orvane/cli/Pace.h"

#include <algorithm>

#include "tools/orvane/cli/Interrupt.h"

namespace orvane::tool {

namespace {

using std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

} // namespace

Pace::Pace(double perSecond) : start(steady_clock::now()), interval(1 / perSecond) {}

double Pace::Elapsed() const {
    return Seconds(steady_clock::now() - start).count();
}

bool Pace::WaitUntil(double seconds) const {
    return sleepUntil(start + std::chrono::duration_cast<steady_clock::duration>(Seconds(seconds)));
}

void Pace::Advance() {
    due = std::max(due + interval, Elapsed());
}

} // namespace orvane::tool
