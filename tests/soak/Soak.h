#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "e2e/SimulatorProcess.h"
#include "soak/SoakClients.h"
#include "soak/SoakFigures.h"
#include "soak/SoakLibrary.h"
#include "soak/SoakPython.h"

// How long to fly: in real time, or in frames, if those are not 0.
struct SoakLength {
    std::chrono::seconds duration{};
    long frames = 0;
    // Whether a Python program flies along.
    bool withPython = false;
};

// A flight of many flight loops in a short time: clients of all kinds come and go, declare and
// press, aircraft change, scenery loads, the plugin restarts, and two thousand frames pass at once.
// Reports its progress on standard output.
//
// All later figures must equal those at the end of the warm-up, a tenth of the flight.
class Soak final {
public:
    explicit Soak(const SoakLength& length);

    // Whether everything stayed flat. Throws when the simulator ends or answers wrongly.
    bool Run();

private:
    using Clock = std::chrono::steady_clock;

    void play();
    void disturb();
    void changeAircraft();
    // No frame for a while, and then the message that scenery was loaded.
    void loadScenery();
    void restart(const std::string& command);
    // Throws unless the console says ok.
    void order(const std::string& command);
    bool report();
    double elapsed() const;
    // From 0 to 1, and beyond.
    double flown();

    SoakLength length;
    Clock::time_point begin = Clock::now();
    SimulatorProcess simulator;
    SoakClients clients;
    SoakLibrary library;
    std::unique_ptr<SoakPython> python;
    std::size_t round = 0;
    bool isWarm = false;
    SoakFigures warm;
};
