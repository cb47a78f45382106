#pragma once

#include <cstddef>
#include <string>

class SimulatorProcess;

// What must not grow in the simulator's process, however long it flies.
struct SoakFigures {
    // The plugin logs a line for each client that resets its connection while it may send.
    static SoakFigures Of(SimulatorProcess& simulator, std::size_t resets);

    // Says what has grown since `earlier`; empty if nothing has.
    std::string GrowthSince(const SoakFigures& earlier) const;
    std::string Text() const;

    long residentKilobytes = 0;
    long fileDescriptors = 0;
    long commandHandlers = 0;
    // Beyond those of resets.
    std::size_t logLines = 0;
};
