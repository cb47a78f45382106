#pragma once

#include <algorithm>
#include <cstdint>
#include <string>

#include "headless/metering/CallCounts.h"
#include "headless/metering/ThreadUsage.h"
#include "headless/metering/TimeHistogram.h"

namespace headless {

// What one plugin took, in its frames and outside of them (start, messages, commands by hand). A
// plugin that is loaded again goes on with the same figures.
struct PluginFigures {
    std::string file;

    // Of the frame that runs, or since the last one ended.
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

    // Moves what was taken to one or the other.
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
