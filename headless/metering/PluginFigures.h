#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "headless/metering/CallCounts.h"
#include "headless/metering/ThreadUsage.h"
#include "headless/metering/TimeHistogram.h"

namespace headless {

// What one plugin used, in its frames and outside of them (start, messages, commands by hand). If a
// plugin is loaded again, its figures continue.
struct PluginFigures {
    std::string file;

    // Of the current frame, or since the last frame ended.
    ThreadUsage usage;
    CallCounts calls;
    std::uint64_t logLines = 0;

    TimeHistogram frames;
    CallCounts callsInFrames;
    std::uint64_t allocations = 0;
    std::uint64_t mostAllocations = 0;
    std::uint64_t pages = 0;
    std::uint64_t logLinesInFrames = 0;

    std::chrono::nanoseconds outside{0};
    std::uint64_t callsOutside = 0;

    // These add the current figures to those in frames or outside of frames.
    void CountAsFrame() {
        frames.Add(usage.cpu);
        callsInFrames.Add(calls);
        allocations += usage.allocations;
        mostAllocations = std::max(mostAllocations, usage.allocations);
        pages += usage.pages;
        logLinesInFrames += logLines;
        forget();
    }
    void CountAsOutside() {
        outside += usage.cpu;
        callsOutside += calls.Total();
        forget();
    }

private:
    void forget() {
        usage = {};
        calls.Clear();
        logLines = 0;
    }
};

} // namespace headless
