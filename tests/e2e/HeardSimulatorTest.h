#pragma once

#include "e2e/EndToEndTest.h"
#include "support/PrivateNetwork.h"

// A flight in real time that announces itself.
class HeardSimulatorTest : public EndToEndTest {
protected:
    void SetUp() override {
        if (!isNetworkPrivate()) {
            GTEST_SKIP() << "this system permits no network namespace: nothing may be sent";
        }
        start();
    }

    void start() {
        simulator = std::make_unique<SimulatorProcess>(
            std::vector<std::string>{"--beacon", "--datarefs", "DataRefs.txt", "--hz", "200"});
        simulator->Ask("run");
    }
};
