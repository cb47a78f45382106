#pragma once

#include <chrono>
#include <string>

#include "e2e/SimulatorProcess.h"
#include "soak/SoakClients.h"
#include "soak/SoakFigures.h"

// A flight of many flight loops in a short time: clients come and go, declare and press, aircraft
// change, and two thousand frames pass at once. Reports its progress on standard output.
//
// All later figures must equal those at the end of the warm-up, a tenth of the time.
class Soak final {
public:
    explicit Soak(std::chrono::seconds duration);

    // Whether everything stayed flat. Throws when the simulator ends or answers wrongly.
    bool Run();

private:
    using Clock = std::chrono::steady_clock;

    void play();
    void changeAircraft();
    // Throws unless the console says ok.
    void order(const std::string& command);
    bool report();
    double elapsed() const;

    std::chrono::seconds duration;
    Clock::time_point begin = Clock::now();
    SimulatorProcess simulator;
    SoakClients clients;
    std::size_t round = 0;
    bool isWarm = false;
    SoakFigures warm;
};
