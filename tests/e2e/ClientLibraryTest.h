#pragma once

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "e2e/EndToEndTest.h"
#include "orvane/Errors.h"
#include "orvane/Options.h"

// The library against the real plugin, in a simulator whose frames run by themselves: a call of the
// library blocks until its answer is there.
class ClientLibraryTest : public EndToEndTest {
protected:
    ClientLibraryTest() { start(); }

    void start() {
        simulator.reset();
        simulator = std::make_unique<SimulatorProcess>(std::vector<std::string>{
            "--datarefs", "DataRefs.txt", "--commands", "Commands.txt", "--hz", "200"});
        loadAircraft("Test aircraft one");
        simulator->Ask("run");
    }

    static orvane::Options options() {
        orvane::Options options;
        options.timeout = std::chrono::milliseconds(20'000);
        options.releaseWithin = std::chrono::milliseconds(20'000);
        options.backoff = {std::chrono::milliseconds(5), std::chrono::milliseconds(50),
                           std::chrono::milliseconds(60'000)};
        return options;
    }

    // Ends the simulator while a client is connected, runs `call` in another thread, which notices
    // the loss, and starts the simulator again.
    template <typename Client, typename Call>
    auto restartDuring(Client& client, Call call) {
        std::promise<void> lost;
        std::atomic<int> connections = 0;
        client.setCallbacks({.connected = [&] { ++connections; },
                             .disconnected = [&](const orvane::Error&) { lost.set_value(); }});
        simulator.reset();
        auto result = std::async(std::launch::async, call);
        lost.get_future().wait();
        EXPECT_EQ(connections, 0);
        start();
        auto value = result.get();
        EXPECT_EQ(connections, 1);
        client.setCallbacks({});
        return value;
    }
};
