#include "headless/xplm/processing/FlightLoops.h"

#include <algorithm>
#include <cmath>

namespace headless {

namespace {

// Simulated time is a sum of frame lengths; a callback due after 0.1 s must not slip by a frame
// because ten times 0.01 is a little less.
constexpr double kTimeTolerance = 1e-6;

} // namespace

void FlightLoops::Register(XPLMFlightLoop_f callback, float interval, void* refcon) {
    if (callback == nullptr) {
        recorder.Refuse(Refusal::NullHandle, "XPLMRegisterFlightLoopCallback", "callback");
        return;
    }
    recorder.Record("XPLMRegisterFlightLoopCallback", refcon, interval);
    if (Loop* known = find(callback, refcon)) {
        schedule(*known, interval);
        return;
    }
    Loop added;
    added.callback = callback;
    added.refcon = refcon;
    added.lastCall = clock.Now();
    schedule(added, interval);
    loops.push_back(added);
}

void FlightLoops::Unregister(XPLMFlightLoop_f callback, void* refcon) {
    Loop* known = find(callback, refcon);
    if (known == nullptr) {
        recorder.Refuse(Refusal::NotRegistered, "XPLMUnregisterFlightLoopCallback", "callback");
        return;
    }
    recorder.Record("XPLMUnregisterFlightLoopCallback", refcon);
    known->removed = true;
    sweep();
}

void FlightLoops::Run(double seconds) {
    running = true;
    const std::size_t count = loops.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (isDue(loops[i])) {
            call(i, seconds);
        }
    }
    running = false;
    sweep();
}

std::size_t FlightLoops::Count() const {
    return static_cast<std::size_t>(
        std::count_if(loops.begin(), loops.end(), [](const Loop& loop) { return !loop.removed; }));
}

void FlightLoops::Clear() {
    for (Loop& loop : loops) {
        loop.removed = true;
    }
    sweep();
}

FlightLoops::Loop* FlightLoops::find(XPLMFlightLoop_f callback, const void* refcon) {
    const auto found = std::find_if(loops.begin(), loops.end(), [&](const Loop& loop) {
        return !loop.removed && loop.callback == callback && loop.refcon == refcon;
    });
    return found == loops.end() ? nullptr : &*found;
}

void FlightLoops::schedule(Loop& loop, float interval) const {
    loop.interval = interval;
    loop.sinceTime = clock.Now();
    loop.sinceFrame = clock.Frame();
}

bool FlightLoops::isDue(const Loop& loop) const {
    if (loop.removed) {
        return false;
    }
    if (loop.interval > 0.0F) {
        return clock.Now() >= loop.sinceTime + static_cast<double>(loop.interval) - kTimeTolerance;
    }
    if (loop.interval < 0.0F) {
        const double frames = std::ceil(-static_cast<double>(loop.interval));
        return static_cast<double>(clock.Frame() - loop.sinceFrame) >= frames;
    }
    return false;
}

// Works by index and on a copy: the callback may register others and move the list.
void FlightLoops::call(std::size_t index, double seconds) {
    const Loop called = loops[index];
    loops[index].lastCall = clock.Now();
    const double sinceLast = clock.Now() - called.lastCall;
    const float next = called.callback(static_cast<float>(sinceLast), static_cast<float>(seconds),
                                       static_cast<int>(clock.Frame()), called.refcon);
    schedule(loops[index], next);
}

void FlightLoops::sweep() {
    if (!running) {
        loops.erase(std::remove_if(loops.begin(), loops.end(),
                                   [](const Loop& loop) { return loop.removed; }),
                    loops.end());
    }
}

} // namespace headless
