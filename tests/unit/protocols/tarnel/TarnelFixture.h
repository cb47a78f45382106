#pragma once

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "common/SimStateInformation.h"
#include "headless/xplm/Simulator.h"
#include "network/RingBuffer.h"
#include "protocols/tarnel/TarnelProtocol.h"
#include "support/Bytes.h"
#include "support/FakeCommandObserver.h"
#include "support/FakeDatarefProvider.h"
#include "support/FakeUtilities.h"
#include "support/RecordingLogger.h"
#include "support/TarnelMessages.h"

// A protocol between two ring buffers, in a simulator with an int and a command for inputs, and an
// aircraft that is not loaded yet.
class TarnelFixture : public testing::Test {
protected:
    using Log = std::vector<std::pair<LogLevel, std::string>>;

    TarnelFixture() {
        simulator.Datarefs().Define(
            {.name = "sim/aircraft/view/acf_descrip", .types = xplmType_Data, .elements = 260});
        simulator.Datarefs().Define({.name = "sim/int", .types = xplmType_Int});
        simulator.Datarefs().Define({.name = "sim/other", .types = xplmType_Int});
        simulator.Commands().Define("sim/command", "a command");
    }

    // An aircraft whose description hashes to 0x12345678.
    void loadPlane() {
        simulator.Datarefs().SetBytes("sim/aircraft/view/acf_descrip",
                                      "A training glider" + std::string(79, '.') + "2_L\x94");
        simState.ReadPlaneId();
        simState.SetPlaneLoaded(true);
    }

    // Feeds the protocol once, after these bytes have arrived.
    int feed(const Bytes& received = {}) {
        fill(in, received);
        return protocol.Feed(&in, &out);
    }

    // What the protocol has answered since the last time.
    Bytes answer() { return drain(out); }

    // Feeds a message that must be consumed whole, and returns the answer.
    Bytes exchange(const Bytes& message) {
        EXPECT_EQ(feed(message), static_cast<int>(message.size()));
        return answer();
    }

    const Bytes kNoPlane = fromHex("FF FF 00 00 04 00 00 00 00 00 00 00");
    const Bytes kPlane = fromHex("FF FF 00 00 04 00 00 00 78 56 34 12");

    headless::Simulator simulator;
    RecordingLogger logger;
    FakeUtilities utilities;
    FakeDatarefProvider provider;
    FakeCommandObserver observer;
    SimStateInformation simState;
    RingBuffer in{100'000, &logger};
    RingBuffer out{100'000, &logger};
    TarnelProtocol protocol{&simState, &logger, &utilities, &provider, &observer};
};
