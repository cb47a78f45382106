#pragma once

#include <cstddef>
#include <memory>

#include "orvane/tarnel/Client.h"
#include "orvane/velmar/Client.h"

class SimulatorProcess;

// Two programs with the client library that stay for the whole flight and come back by themselves
// when the plugin restarts; in each round another one comes and goes. Their calls wait in a thread
// of their own, while frames pass. A wrong answer throws.
class SoakLibrary final {
public:
    // The simulator is borrowed.
    explicit SoakLibrary(SimulatorProcess& simulator);

    void Play(std::size_t round);

private:
    void declare();
    void fly();
    void look(std::size_t round);
    static void visit();

    SimulatorProcess& simulator;
    std::unique_ptr<orvane::tarnel::Client> controls;
    std::unique_ptr<orvane::velmar::Client> panel;
};
