#include <csignal>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RingBufferTest.h"
#include "common/LoggingService.h"
#include "headless/xplm/Simulator.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// One row per check: an operation, with one byte less than it needs.
struct Shortage {
    const char* operation;
    // Bytes in a buffer of 16 bytes before the operation.
    int held;
    std::function<void(RingBuffer&)> run;
    const char* message;
};

void PrintTo(const Shortage& shortage, std::ostream* out) {
    *out << shortage.operation;
}

class RingBufferShortageTest : public testing::TestWithParam<Shortage> {
protected:
    RingBufferShortageTest() {
        for (int i = 0; i < GetParam().held; ++i) {
            buffer.WriteUInt8(0x11);
        }
    }

    RecordingLogger logger;
    RingBuffer buffer{16, &logger};
};

TEST_P(RingBufferShortageTest, IsReportedOnceAtTheErrorLevel) {
    EXPECT_THROW(GetParam().run(buffer), FatalReport);
    EXPECT_THAT(logger.messages,
                ElementsAre(std::pair(LogLevelError, std::string(GetParam().message))));
}

std::vector<Shortage> shortages() {
    static unsigned char bytes[16] = {};
    return {
        {"ReadFloat", 3, [](RingBuffer& b) { b.ReadFloat(); },
         "Error@RingBuffer::ReadFloat : GetNumReadBytesAvailable() < 4"},
        {"ReadInt32", 3, [](RingBuffer& b) { b.ReadInt32(); },
         "Error@RingBuffer::ReadInt32 : GetNumReadBytesAvailable() < 4"},
        {"ReadUInt32", 3, [](RingBuffer& b) { b.ReadUInt32(); },
         "Error@RingBuffer::ReadUInt32 : GetNumReadBytesAvailable() < 4"},
        {"ReadInt16", 1, [](RingBuffer& b) { b.ReadInt16(); },
         "Error@RingBuffer::ReadInt16 : GetNumReadBytesAvailable() < 2"},
        {"ReadUInt16", 1, [](RingBuffer& b) { b.ReadUInt16(); },
         "Error@RingBuffer::ReadUInt16 : GetNumReadBytesAvailable() < 2"},
        {"ReadInt8", 0, [](RingBuffer& b) { b.ReadInt8(); },
         "Error@RingBuffer::ReadInt8 : GetNumReadBytesAvailable() < 1"},
        {"ReadUInt8", 0, [](RingBuffer& b) { b.ReadUInt8(); },
         "Error@RingBuffer::ReadUInt8 : GetNumReadBytesAvailable() < 1"},
        {"WriteFloat", 12, [](RingBuffer& b) { b.WriteFloat(1.0F); },
         "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4"},
        {"WriteInt32", 12, [](RingBuffer& b) { b.WriteInt32(1); },
         "Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4"},
        {"WriteUInt32", 12, [](RingBuffer& b) { b.WriteUInt32(1); },
         "Error@RingBuffer::WriteUInt32 : GetNumWriteBytesAvailable() < 4"},
        {"WriteInt16", 14, [](RingBuffer& b) { b.WriteInt16(1); },
         "Error@RingBuffer::WriteInt16 : GetNumWriteBytesAvailable() < 2"},
        {"WriteUInt16", 14, [](RingBuffer& b) { b.WriteUInt16(1); },
         "Error@RingBuffer::WriteUInt16 : GetNumWriteBytesAvailable() < 2"},
        {"WriteInt8", 15, [](RingBuffer& b) { b.WriteInt8(1); },
         "Error@RingBuffer::WriteInt8 : GetNumWriteBytesAvailable() < 1"},
        {"WriteUInt8", 15, [](RingBuffer& b) { b.WriteUInt8(1); },
         "Error@RingBuffer::WriteUInt8 : GetNumWriteBytesAvailable() < 1"},
        {"MoveReadPosForward", 4, [](RingBuffer& b) { b.MoveReadPosForward(5); },
         "Error@RingBuffer::MoveReadPosForward : GetNumReadBytesAvailable() < amount"},
        {"WriteByteArray", 5, [](RingBuffer& b) { b.WriteByteArray(bytes, 11); },
         "Error@RingBuffer::WriteByteArray : GetNumWriteBytesAvailable() < length"},
        {"ReadByteArrayOfNoBytes", 5, [](RingBuffer& b) { b.ReadByteArray(bytes, 0); },
         "Error@RingBuffer::ReadByteArray : maxlength <= 0"},
        {"ReadByteArrayToNowhere", 5, [](RingBuffer& b) { b.ReadByteArray(nullptr, 5); },
         "Error@RingBuffer::ReadByteArray : dst == nullptr"},
    };
}

INSTANTIATE_TEST_SUITE_P(Operations, RingBufferShortageTest, testing::ValuesIn(shortages()),
                         [](const auto& row) { return std::string(row.param.operation); });

// With the real service.
TEST(RingBufferDeathTest, EndsTheProcessWithTheLineOfAShortage) {
    const auto readTooMuch = [] {
        headless::Simulator simulator;
        simulator.Log().EchoToStderr(true);
        LoggingService service;
        RingBuffer buffer(16, &service);
        buffer.WriteUInt8(1);
        buffer.ReadInt16();
    };
    EXPECT_EXIT(readTooMuch(), testing::KilledBySignal(SIGABRT),
                "^XPlaneOrvane [0-9: -]+ "
                "Error@RingBuffer::ReadInt16 : GetNumReadBytesAvailable\\(\\) < 2\n$");
}

// The same operations with exactly what they need succeed.
TEST_F(RingBufferTest, ReportsNothingWhenExactlyEnoughIsThere) {
    RingBuffer buffer(5, &logger);
    buffer.WriteFloat(1.0F);
    buffer.ReadFloat();
    buffer.WriteInt32(1);
    buffer.ReadInt32();
    buffer.WriteUInt32(1);
    buffer.ReadUInt32();
    RingBuffer small(3, &logger);
    small.WriteInt16(1);
    small.ReadInt16();
    small.WriteUInt16(1);
    small.ReadUInt16();
    RingBuffer smallest(2, &logger);
    smallest.WriteInt8(1);
    smallest.ReadInt8();
    smallest.WriteUInt8(1);
    smallest.MoveReadPosForward(1);
    writeArray(buffer, fromHex("01 02 03 04"));
    readArray(buffer, 4);
    EXPECT_THAT(logger.messages, IsEmpty());
}

// With a logger that returns.
TEST_F(RingBufferTest, GoesOnAfterAReport) {
    logger.throwsOnError = false;
    RingBuffer buffer(8, &logger);
    buffer.WriteUInt8(0x7F);
    EXPECT_EQ(buffer.ReadUInt16() & 0xFF, 0x7F);
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 7U);
}

TEST_F(RingBufferTest, MakesBothChecksOfAnArrayReadInOrder) {
    logger.throwsOnError = false;
    RingBuffer buffer(8, &logger);
    EXPECT_EQ(buffer.ReadByteArray(nullptr, 0), 0U);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@RingBuffer::ReadByteArray : maxlength <= 0",
                            "Error@RingBuffer::ReadByteArray : dst == nullptr"));
}

} // namespace
