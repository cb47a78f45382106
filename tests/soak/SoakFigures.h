#pragma once

#include <cstdint>
#include <string>

class SimulatorProcess;

// What must not grow in the simulator's process, however long it flies.
struct SoakFigures {
    static SoakFigures Of(SimulatorProcess& simulator);

    // Says what has grown since `earlier`; empty if nothing has.
    std::string GrowthSince(const SoakFigures& earlier) const;
    std::string Text() const;

    long residentKilobytes = 0;
    long fileDescriptors = 0;
    long commandHandlers = 0;
    std::uintmax_t logBytes = 0;
};
