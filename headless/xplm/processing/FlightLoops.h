#pragma once

#include "XPLMProcessing.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/Clock.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace headless {

// The callbacks that plugins want to have called while the simulator runs.
//
// An interval is in seconds when positive and in flight loops when negative; 0 is never. Callbacks
// may register and unregister others and themselves while they are called; one that is registered
// during a frame is not called before the next.
class FlightLoops final {
public:
    FlightLoops(const Clock& simulatedClock, CallRecorder& callRecorder)
        : clock(simulatedClock), recorder(callRecorder) {}
    FlightLoops(const FlightLoops&) = delete;
    FlightLoops& operator=(const FlightLoops&) = delete;

    // A pair of callback and refcon that is known already gets the new interval.
    void Register(XPLMFlightLoop_f callback, float interval, void* refcon);
    void Unregister(XPLMFlightLoop_f callback, void* refcon);

    // Calls what is due at the clock's time and frame. `seconds` is the length of the frame.
    void Run(double seconds);

    std::size_t Count() const;
    // Drops all, as the simulator does with those of a plugin that is gone.
    void Clear();

private:
    struct Loop {
        XPLMFlightLoop_f callback = nullptr;
        void* refcon = nullptr;
        float interval = 0.0F;
        // Time and frame that the interval counts from.
        double sinceTime = 0.0;
        std::int64_t sinceFrame = 0;
        double lastCall = 0.0;
        bool removed = false;
    };

    Loop* find(XPLMFlightLoop_f callback, const void* refcon);
    void schedule(Loop& loop, float interval) const;
    bool isDue(const Loop& loop) const;
    void call(std::size_t index, double seconds);
    void sweep();

    const Clock& clock;
    CallRecorder& recorder;
    std::vector<Loop> loops;
    bool running = false;
};

} // namespace headless
