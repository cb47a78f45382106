#pragma once

#include "e2e/EndToEndTest.h"
#include "e2e/dissector/LoopbackCapture.h"

// A flight whose exchanges are captured from the wire, between a client and the plugin.
class LiveCaptureTest : public EndToEndTest {
protected:
    // Of a value in Tarnel's definitions.
    enum Type { kInt = 1, kFloat = 2, kIntArray = 3, kFloatArray = 4, kCommand = 6 };

    LiveCaptureTest() { startSimulator(); }

    static Bytes velmar(std::initializer_list<Bytes> packets) {
        return join({fromHex("55 66 77 88"), join(packets)});
    }

    static Bytes smallDefinitions() {
        return tarnel(definitionsMessage(
            {{.action = 7, .targetType = kInt, .target = "test/int"},
             {.action = 8, .targetType = kFloat, .scaling = 2, .target = "test/float"}},
            {{.id = 1, .name = "test/int", .type = kInt},
             {.id = 2, .name = "test/floats", .type = kFloatArray, .first = 1, .count = 2},
             {.id = 3, .name = "kyr/button", .type = kCommand},
             {.id = 4, .name = "test/once", .type = kCommand}}));
    }

    LoopbackCapture capture{"flight.pcap"};
};
