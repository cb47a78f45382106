#pragma once

#include <string>
#include <vector>

#include "bench/tick/BenchClient.h"
#include "bench/tick/TickFlight.h"
#include "support/Bytes.h"

// Exchanges of one client: 16 inputs go to the plugin, the values of all outputs come back.
//
// An exchange is SendRequest, RunTicks and ReceiveAnswer, in this order. The first 16 outputs are
// the datarefs that the inputs set, so that every answer shows the effect of the request before it.
class Exchanges final {
public:
    // Makes a few exchanges before it returns.
    Exchanges(const std::string& plugin, int outputCount);

    // Returns when the request has arrived in the plugin's socket.
    void SendRequest();
    // Two ticks: in the first the plugin receives, in the second it sends.
    void RunTicks();
    // The frame with its length; valid until the next one.
    const Bytes& ReceiveAnswer();

    headless::Simulator& Simulator() { return flight.Simulator(); }

private:
    void deliver(const Bytes& request) const;

    TickFlight flight;
    BenchClient client;
    int accepted;
    std::vector<Bytes> requests;
    std::size_t nextRequest = 0;
    Bytes answer;
};
