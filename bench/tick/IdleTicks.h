#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bench/tick/BenchClient.h"
#include "bench/tick/TickFlight.h"

// Ticks in which no client sends anything; the number of connected clients may be 0.
class IdleTicks final {
public:
    IdleTicks(const std::string& plugin, int clientCount);

    void RunTick() { flight.RunFrame(); }

private:
    TickFlight flight;
    std::vector<std::unique_ptr<BenchClient>> clients;
};
