#include "headless/scenario/Flight.h"

namespace headless {

namespace {

// The sum of frame lengths may be slightly off.
constexpr double kRounding = 1e-6;

} // namespace

void Flight::RunFor(double seconds, const std::function<bool()>& isDone) {
    const Clock& clock = session.Simulator().Clock();
    const double end = clock.Now() + seconds - kRounding;
    while (!isDone() && clock.Now() < end && RunFrame()) {
    }
}

} // namespace headless
