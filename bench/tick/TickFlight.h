#pragma once

#include <string>

#include "bench/tick/BenchClient.h"
#include "headless/host/Session.h"
#include "support/TemporaryDirectory.h"

// The headless simulator with one plugin in it, and its frames.
//
// Everything is on the calling thread. The aircraft does not move, so that a frame is
// little more than the plugin's tick. The working directory is a new one during the flight. One
// object at a time, since the port is fixed.
class TickFlight final {
public:
    // The benchmark's datarefs, all floats.
    static constexpr int kDatarefs = 1000;
    static std::string DatarefName(int index);

    explicit TickFlight(const std::string& plugin);
    TickFlight(const TickFlight&) = delete;
    TickFlight& operator=(const TickFlight&) = delete;

    headless::Simulator& Simulator() { return session.Simulator(); }

    void RunFrame() { session.Simulator().RunFrame(kFrameSeconds); }

private:
    static constexpr double kFrameSeconds = 1.0 / 60.0;

    TemporaryDirectory directory;
    headless::Session session;
};
