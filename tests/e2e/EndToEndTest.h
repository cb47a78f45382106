#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "e2e/SimulatorProcess.h"
#include "e2e/TestClient.h"
#include "support/Bytes.h"
#include "support/TarnelMessages.h"
#include "support/TemporaryDirectory.h"

// A flight in a folder of its own: the real plugin in a real simulator, with a few datarefs and
// commands that only the test changes, and "Test aircraft one" loaded.
class EndToEndTest : public testing::Test {
protected:
    EndToEndTest();

    void startSimulator();
    void loadAircraft(const std::string& description);

    TemporaryDirectory directory;
    std::unique_ptr<SimulatorProcess> simulator;
};

// FF FF 00 00 04 00 00 00 and the id: the end of every output stream.
Bytes trailer(const char* aircraftId);
inline constexpr const char* kAircraftOne = "B1 2E 85 B9";
inline constexpr const char* kAircraftTwo = "BA FC 11 23";
