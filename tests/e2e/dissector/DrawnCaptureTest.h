#pragma once

#include <gtest/gtest.h>

#include "e2e/dissector/DrawnCapture.h"
#include "support/Bytes.h"
#include "support/TarnelMessages.h"
#include "support/TemporaryDirectory.h"
#include "support/VelmarMessages.h"

// A drawn capture, and the requests and answers that most tests use.
class DrawnCaptureTest : public testing::Test {
protected:
    // One int output, 1, "test/int", and an input, 7, for it; 628 bytes.
    static Bytes definitions();
    static Bytes data(std::int32_t value);
    // DATA without items.
    static Bytes query();
    // The answer to all three.
    static Bytes outputs(const char* value);

    // The float dataref 7, "test/float"; 31 bytes.
    static Bytes registration();
    static Bytes registrationAnswer();

    TemporaryDirectory directory;
    DrawnCapture capture{"drawn.pcap"};
};

// The answer on a connection without definitions.
inline const Bytes kEmptyOutputs = fromHex("0C 00 00 00 FF FF 00 00 04 00 00 00 01 02 03 04");
