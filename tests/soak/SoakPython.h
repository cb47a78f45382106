#pragma once

#include <cstddef>
#include <string>

#include "support/ChildProcess.h"

class SimulatorProcess;

// The program soak_client.py, which plays a round of its own with the Python package whenever it is
// told to, while frames pass. Throws if it ends or something went wrong there.
class SoakPython final {
public:
    // The simulator is borrowed.
    explicit SoakPython(SimulatorProcess& simulator);
    ~SoakPython();
    SoakPython(const SoakPython&) = delete;
    SoakPython& operator=(const SoakPython&) = delete;

    void Play(std::size_t round);

private:
    bool hasAnswered() const;
    std::string takeLine() const;

    SimulatorProcess& simulator;
    Channel input = pipeToChild();
    Channel output = pipeFromChild();
    ChildProcess process;
};
