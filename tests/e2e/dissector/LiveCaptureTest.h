#pragma once

#include "e2e/EndToEndTest.h"
#include "e2e/dissector/LoopbackCapture.h"
#include "support/VelmarMessages.h"

// A flight; the exchanges between a client and the plugin are captured from the wire.
class LiveCaptureTest : public EndToEndTest {
protected:
    LiveCaptureTest() { startSimulator(); }

    static Bytes smallDefinitions() {
        return tarnelRequest(definitionsMessage(
            {{.action = 7, .targetType = RecordType::Int, .target = "test/int"},
             {.action = 8, .targetType = RecordType::Float, .scaling = 2, .target = "test/float"}},
            {{.id = 1, .name = "test/int", .type = RecordType::Int},
             {.id = 2,
              .name = "test/floats",
              .type = RecordType::FloatArray,
              .first = 1,
              .count = 2},
             {.id = 3, .name = "kyr/button", .type = RecordType::Command},
             {.id = 4, .name = "test/once", .type = RecordType::Command}}));
    }

    LoopbackCapture capture{"flight.pcap"};
};
