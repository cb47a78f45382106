#pragma once

#include <gtest/gtest.h>

#include "network/RingBuffer.h"
#include "support/Bytes.h"
#include "support/RecordingLogger.h"

// What the tests of buffers do to them, and a logger to make them with.
class RingBufferTest : public testing::Test {
protected:
    // Moves both positions of an empty buffer forward.
    static void advance(RingBuffer& buffer, int count) {
        for (int i = 0; i < count; ++i) {
            buffer.WriteUInt8(0xEE);
            buffer.ReadUInt8();
        }
    }

    static void writeArray(RingBuffer& buffer, Bytes bytes) {
        buffer.WriteByteArray(bytes.data(), bytes.size());
    }

    static Bytes readArray(RingBuffer& buffer, unsigned long max) {
        Bytes bytes(max);
        bytes.resize(buffer.ReadByteArray(bytes.data(), max));
        return bytes;
    }

    RecordingLogger logger;
};
