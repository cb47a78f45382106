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
    Loop* const known = find(callback, refcon);
    schedule(known != nullptr ? *known : add(callback, refcon), interval, true);
}

void FlightLoops::Unregister(XPLMFlightLoop_f callback, void* refcon) {
    Loop* known = find(callback, refcon);
    if (known == nullptr) {
        recorder.Refuse(Refusal::NotRegistered, "XPLMUnregisterFlightLoopCallback", "callback");
        return;
    }
    recorder.Record("XPLMUnregisterFlightLoopCallback", refcon);
    refuseFromWithin(*known, "XPLMUnregisterFlightLoopCallback");
    known->removed = true;
    sweep();
}

void FlightLoops::SetInterval(XPLMFlightLoop_f callback, float interval, bool fromNow,
                              void* refcon) {
    if (Loop* known = find(callback, refcon)) {
        refuseFromWithin(*known, "XPLMSetFlightLoopCallbackInterval");
        schedule(*known, interval, fromNow);
    } else {
        recorder.Refuse(Refusal::NotRegistered, "callback");
    }
}

XPLMFlightLoopID FlightLoops::Create(const XPLMCreateFlightLoop_t* parameters) {
    if (parameters == nullptr || parameters->callbackFunc == nullptr) {
        recorder.Refuse(Refusal::NullHandle, "callback");
        return nullptr;
    }
    Loop& added = add(parameters->callbackFunc, parameters->refcon);
    added.phase = parameters->phase;
    added.hasHandle = true;
    return &added;
}

void FlightLoops::Destroy(XPLMFlightLoopID handle) {
    if (Loop* known = resolve(handle)) {
        known->removed = true;
        sweep();
    }
}

void FlightLoops::Schedule(XPLMFlightLoopID handle, float interval, bool fromNow) {
    if (Loop* known = resolve(handle)) {
        schedule(*known, interval, fromNow);
    }
}

void FlightLoops::Run(XPLMFlightLoopPhaseType phase, double seconds) {
    running = true;
    const std::size_t count = loops.size();
    for (std::size_t i = 0; i < count; ++i) {
        Loop& loop = *loops[i];
        if (loop.phase == phase && isDue(loop) && context.IsActive(loop.owner)) {
            call(loop, seconds);
        }
    }
    running = false;
    sweep();
}

std::size_t FlightLoops::Count() const {
    return static_cast<std::size_t>(
        std::count_if(loops.begin(), loops.end(), [](const auto& loop) { return !loop->removed; }));
}

std::size_t FlightLoops::DropOf(XPLMPluginID plugin) {
    const std::size_t before = Count();
    for (const auto& loop : loops) {
        loop->removed = loop->removed || loop->owner == plugin;
    }
    const std::size_t dropped = before - Count();
    sweep();
    return dropped;
}

FlightLoops::Loop& FlightLoops::add(XPLMFlightLoop_f callback, void* refcon) {
    auto added = std::make_unique<Loop>();
    added->callback = callback;
    added->refcon = refcon;
    added->owner = context.Plugin();
    added->lastCall = clock.Now();
    added->lastFrame = clock.Frame();
    loops.push_back(std::move(added));
    return *loops.back();
}

FlightLoops::Loop* FlightLoops::find(XPLMFlightLoop_f callback, const void* refcon) {
    const auto found = std::find_if(loops.begin(), loops.end(), [&](const auto& loop) {
        return !loop->removed && !loop->hasHandle && loop->callback == callback &&
               loop->refcon == refcon;
    });
    return found == loops.end() ? nullptr : found->get();
}

FlightLoops::Loop* FlightLoops::resolve(const void* handle) {
    const auto found = std::find_if(loops.begin(), loops.end(), [&](const auto& loop) {
        return !loop->removed && loop->hasHandle && loop.get() == handle;
    });
    if (found == loops.end()) {
        recorder.Refuse(handle == nullptr ? Refusal::NullHandle : Refusal::UnknownHandle,
                        "flight loop");
        return nullptr;
    }
    return found->get();
}

void FlightLoops::schedule(Loop& loop, float interval, bool fromNow) const {
    loop.interval = interval;
    loop.sinceTime = fromNow ? clock.Now() : loop.lastCall;
    loop.sinceFrame = fromNow ? clock.Frame() : loop.lastFrame;
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

// The callback may register others; a loop stays in place until it is swept away.
void FlightLoops::call(Loop& loop, double seconds) {
    const double sinceLast = clock.Now() - loop.lastCall;
    loop.lastCall = clock.Now();
    loop.lastFrame = clock.Frame();
    called = &loop;
    const PluginContext::Call call(context, loop.owner, "flight loop");
    const float next =
        call.Into(loop.callback, static_cast<float>(sinceLast), static_cast<float>(seconds),
                  static_cast<int>(clock.Frame()), loop.refcon);
    called = nullptr;
    schedule(loop, next, true);
}

void FlightLoops::refuseFromWithin(const Loop& loop, const char* function) {
    if (called == &loop) {
        recorder.Refuse(Refusal::WrongMoment, function, "in the callback itself");
    }
}

void FlightLoops::sweep() {
    if (!running) {
        std::erase_if(loops, [](const auto& loop) { return loop->removed; });
    }
}

} // namespace headless
