#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "XPLMProcessing.h"
#include "headless/xplm/CallRecorder.h"
#include "headless/xplm/Clock.h"
#include "headless/xplm/plugin/PluginContext.h"

namespace headless {

// The callbacks that plugins registered to be called while the simulator runs.
//
// An interval is in seconds if positive and in flight loops if negative; 0 is never. Callbacks may
// come and go while they are called; one registered during a frame is not called before the next
// frame. Callbacks of a disabled plugin wait.
class FlightLoops final {
public:
    FlightLoops(const Clock& simulatedClock, PluginContext& pluginContext,
                CallRecorder& callRecorder)
        : clock(simulatedClock), context(pluginContext), recorder(callRecorder) {}
    FlightLoops(const FlightLoops&) = delete;
    FlightLoops& operator=(const FlightLoops&) = delete;

    // A pair of callback and refcon that is already registered gets the new interval. It runs
    // before the flight model.
    void Register(XPLMFlightLoop_f callback, float interval, void* refcon);
    void Unregister(XPLMFlightLoop_f callback, void* refcon);
    // The interval counts from now, or from the last call.
    void SetInterval(XPLMFlightLoop_f callback, float interval, bool fromNow, void* refcon);

    // Null if the structure has no callback.
    XPLMFlightLoopID Create(const XPLMCreateFlightLoop_t* parameters);
    void Destroy(XPLMFlightLoopID handle);
    void Schedule(XPLMFlightLoopID handle, float interval, bool fromNow);

    // Calls what is due in this phase at the clock's time and frame. `seconds` is the frame's
    // length.
    void Run(XPLMFlightLoopPhaseType phase, double seconds);

    std::size_t Count() const;
    std::size_t DropOf(XPLMPluginID plugin);

private:
    struct Loop {
        XPLMFlightLoop_f callback = nullptr;
        void* refcon = nullptr;
        XPLMFlightLoopPhaseType phase = xplm_FlightLoop_Phase_BeforeFlightModel;
        XPLMPluginID owner = XPLM_PLUGIN_XPLANE;
        // Made by Create(), so only its handle finds it.
        bool hasHandle = false;
        float interval = 0.0F;
        // The interval counts from this time and frame.
        double sinceTime = 0.0;
        std::int64_t sinceFrame = 0;
        double lastCall = 0.0;
        std::int64_t lastFrame = 0;
        bool removed = false;
    };

    Loop& add(XPLMFlightLoop_f callback, void* refcon);
    Loop* find(XPLMFlightLoop_f callback, const void* refcon);
    Loop* resolve(const void* handle);
    void schedule(Loop& loop, float interval, bool fromNow) const;
    bool isDue(const Loop& loop) const;
    void call(Loop& loop, double seconds);
    void sweep();
    // For functions that a callback must not use on itself.
    void refuseFromWithin(const Loop& loop, const char* function);

    const Clock& clock;
    PluginContext& context;
    CallRecorder& recorder;
    std::vector<std::unique_ptr<Loop>> loops;
    bool running = false;
    // The loop whose callback is running.
    const Loop* called = nullptr;
};

} // namespace headless
