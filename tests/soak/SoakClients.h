#pragma once

#include <cstddef>
#include <memory>

#include "e2e/TestClient.h"
#include "support/Bytes.h"

class SimulatorProcess;

// The clients of a long flight: two that stay and declare anew each round, and others that come,
// do something and go, each in another way. Every answer is checked; a wrong one throws.
class SoakClients final {
public:
    // The simulator is borrowed.
    explicit SoakClients(SimulatorProcess& simulator);

    // One round: each client has its turn. The visitors are gone afterwards.
    void Play(std::size_t round);

    // A hundred clients at once, which leave while they tell their protocol, half of them by a
    // reset.
    void Storm();
    // After a restart of the plugin.
    void Reconnect();

    std::size_t Served() const { return served; }
    // By clients of storms.
    std::size_t Resets() const { return resets; }

private:
    void redefine(std::size_t round);
    void fly();
    void registerAnew();
    void visitAndClose();
    void visitAndHalfClose();
    void visitAndVanish(std::size_t round);

    SimulatorProcess& simulator;
    std::unique_ptr<TestClient> controls;
    std::unique_ptr<TestClient> panel;
    std::size_t served = 0;
    std::size_t resets = 0;
};
