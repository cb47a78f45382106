#pragma once

#include <cstddef>

#include "e2e/TestClient.h"
#include "support/Bytes.h"

class SimulatorProcess;

// The clients of a long flight: two that stay and declare anew each round, and others that come,
// do something and go, each in another way. Whatever they are answered is checked; an answer that
// is wrong is an exception.
class SoakClients final {
public:
    // The simulator is borrowed.
    explicit SoakClients(SimulatorProcess& simulator);

    // One round: every client has its turn. Those that came are gone afterwards.
    void Play(std::size_t round);

    std::size_t Served() const { return served; }

private:
    void redefine(std::size_t round);
    void fly();
    void registerAnew();
    void visitAndClose();
    void visitAndHalfClose();
    void visitAndVanish(std::size_t round);

    SimulatorProcess& simulator;
    TestClient controls;
    TestClient panel;
    std::size_t served = 2;
};
