#include "RingBufferTest.h"

#include <cstdint>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::IsEmpty;

TEST_F(RingBufferTest, StartsEmptyWithOneByteKeptFree) {
    const RingBuffer buffer(16, &logger);
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 15U);
}

TEST_F(RingBufferTest, HoldsOneByteLessThanItsSize) {
    RingBuffer buffer(16, &logger);
    for (std::uint8_t i = 0; i < 15; ++i) {
        buffer.WriteUInt8(i);
    }
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 15U);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 0U);
    EXPECT_EQ(toHex(drain(buffer)), "00 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D 0E");
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(RingBufferTest, CountsAfterTheWriterHasWrapped) {
    RingBuffer buffer(16, &logger);
    advance(buffer, 12);
    fill(buffer, fromHex("01 02 03 04 05 06"));
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 6U);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 9U);
}

TEST_F(RingBufferTest, HoldsNothingWithASizeOfOneOrLess) {
    for (const int size : {1, 0, -1, std::numeric_limits<int>::min()}) {
        RingBuffer buffer(size, &logger);
        EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U) << size;
        EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 0U) << size;
        EXPECT_THROW(buffer.WriteUInt8(1), FatalReport) << size;
    }
}

TEST_F(RingBufferTest, WritesIntegersLowByteFirst) {
    RingBuffer buffer(64, &logger);
    buffer.WriteInt32(0x01020304);
    buffer.WriteUInt32(0xA1B2C3D4);
    buffer.WriteInt16(0x0102);
    buffer.WriteUInt16(0xF1E2);
    buffer.WriteInt8(0x7F);
    buffer.WriteUInt8(0x80);
    EXPECT_EQ(toHex(drain(buffer)), "04 03 02 01 D4 C3 B2 A1 02 01 E2 F1 7F 80");
}

TEST_F(RingBufferTest, WritesNegativeIntegersAsTwosComplement) {
    RingBuffer buffer(64, &logger);
    buffer.WriteInt32(-2);
    buffer.WriteInt16(-2);
    buffer.WriteInt8(-2);
    EXPECT_EQ(toHex(drain(buffer)), "FE FF FF FF FE FF FE");
}

TEST_F(RingBufferTest, WritesAFloatAsItsBitPattern) {
    RingBuffer buffer(64, &logger);
    buffer.WriteFloat(1.0F);
    buffer.WriteFloat(-0.5F);
    EXPECT_EQ(toHex(drain(buffer)), "00 00 80 3F 00 00 00 BF");
}

TEST_F(RingBufferTest, ReadsIntegersLowByteFirst) {
    RingBuffer buffer(64, &logger);
    fill(buffer, fromHex("04 03 02 81 04 03 02 81 02 81 02 81 81 81"));
    EXPECT_EQ(buffer.ReadUInt32(), 0x81020304U);
    EXPECT_EQ(buffer.ReadInt32(), -2130574588);
    EXPECT_EQ(buffer.ReadUInt16(), 0x8102);
    EXPECT_EQ(buffer.ReadInt16(), -32510);
    EXPECT_EQ(buffer.ReadUInt8(), 0x81);
    EXPECT_EQ(buffer.ReadInt8(), -127);
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U);
}

TEST_F(RingBufferTest, ReadsAFloatFromItsBitPattern) {
    RingBuffer buffer(64, &logger);
    fill(buffer, fromHex("00 00 80 3F 00 00 00 BF"));
    EXPECT_EQ(buffer.ReadFloat(), 1.0F);
    EXPECT_EQ(buffer.ReadFloat(), -0.5F);
}

TEST_F(RingBufferTest, KeepsTheBitsOfASignallingNotANumber) {
    RingBuffer buffer(16, &logger);
    fill(buffer, fromHex("01 00 A0 7F"));
    buffer.WriteFloat(buffer.ReadFloat());
    EXPECT_EQ(toHex(drain(buffer)), "01 00 A0 7F");
}

TEST_F(RingBufferTest, SplitsAValueAcrossTheEndOfTheStorage) {
    RingBuffer buffer(8, &logger);
    const unsigned char* const storage = buffer.GetReadPosAddress();
    advance(buffer, 6);
    buffer.WriteUInt32(0xA1B2C3D4);
    EXPECT_EQ(storage[6], 0xD4);
    EXPECT_EQ(storage[7], 0xC3);
    EXPECT_EQ(storage[0], 0xB2);
    EXPECT_EQ(storage[1], 0xA1);
    EXPECT_EQ(buffer.ReadUInt32(), 0xA1B2C3D4U);
}

TEST_F(RingBufferTest, ReadsEveryTypeIntactAtEveryPositionOfTheStorage) {
    for (int start = 0; start < 8; ++start) {
        RingBuffer buffer(8, &logger);
        advance(buffer, start);
        buffer.WriteInt32(-123456789);
        buffer.WriteInt16(-12345);
        EXPECT_EQ(buffer.ReadInt32(), -123456789) << start;
        buffer.WriteFloat(-1.5F);
        EXPECT_EQ(buffer.ReadInt16(), -12345) << start;
        EXPECT_EQ(buffer.ReadFloat(), -1.5F) << start;
    }
}

TEST_F(RingBufferTest, PutsBackEverythingReadSinceTheRestorePoint) {
    RingBuffer buffer(16, &logger);
    fill(buffer, fromHex("01 02 03 04 05"));
    buffer.ReadUInt8();
    buffer.SetReadPosRestorePoint();
    buffer.ReadUInt8();
    buffer.ReadUInt8();
    buffer.ReadUInt8();
    buffer.RestoreReadPos();
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 4U);
    EXPECT_EQ(toHex(drain(buffer)), "02 03 04 05");
}

TEST_F(RingBufferTest, RestoresAcrossTheEndOfTheStorage) {
    RingBuffer buffer(8, &logger);
    advance(buffer, 6);
    fill(buffer, fromHex("01 02 03 04 05"));
    buffer.SetReadPosRestorePoint();
    buffer.ReadUInt32();
    buffer.RestoreReadPos();
    EXPECT_EQ(toHex(drain(buffer)), "01 02 03 04 05");
}

TEST_F(RingBufferTest, RestoresToTheStartOfItsStorageBeforeAPointWasSet) {
    RingBuffer buffer(16, &logger);
    fill(buffer, fromHex("01 02"));
    buffer.ReadUInt8();
    buffer.RestoreReadPos();
    EXPECT_EQ(toHex(drain(buffer)), "01 02");
}

TEST_F(RingBufferTest, IsEmptyAfterAResetWhateverItHeld) {
    RingBuffer buffer(8, &logger);
    const unsigned char* const storage = buffer.GetReadPosAddress();
    advance(buffer, 6);
    fill(buffer, fromHex("01 02 03 04 05"));
    buffer.ReadUInt8();
    buffer.SetReadPosRestorePoint();
    buffer.ResetBuffer();
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 7U);
    EXPECT_EQ(buffer.GetReadPosAddress(), storage);
    buffer.WriteUInt8(0x55);
    buffer.RestoreReadPos();
    EXPECT_EQ(toHex(drain(buffer)), "55");
}

TEST_F(RingBufferTest, ShowsItsReadPosition) {
    RingBuffer buffer(8, &logger);
    const unsigned char* const storage = buffer.GetReadPosAddress();
    fill(buffer, fromHex("01 02 03"));
    EXPECT_EQ(buffer.GetReadPosAddress(), storage);
    buffer.ReadUInt16();
    EXPECT_EQ(buffer.GetReadPosAddress(), storage + 2);
}

TEST_F(RingBufferTest, ReturnsToTheStartOfTheStorageAfterItsLastByteWasRead) {
    RingBuffer buffer(8, &logger);
    const unsigned char* const storage = buffer.GetReadPosAddress();
    advance(buffer, 8);
    EXPECT_EQ(buffer.GetReadPosAddress(), storage);
}

TEST_F(RingBufferTest, SkipsBytes) {
    RingBuffer buffer(8, &logger);
    fill(buffer, fromHex("01 02 03 04"));
    buffer.MoveReadPosForward(3);
    EXPECT_EQ(toHex(drain(buffer)), "04");
}

TEST_F(RingBufferTest, SkipsNothing) {
    RingBuffer buffer(8, &logger);
    buffer.MoveReadPosForward(0);
    fill(buffer, fromHex("01"));
    buffer.MoveReadPosForward(0);
    EXPECT_EQ(toHex(drain(buffer)), "01");
}

TEST_F(RingBufferTest, SkipsBytesAcrossTheEndOfTheStorage) {
    RingBuffer buffer(8, &logger);
    advance(buffer, 5);
    fill(buffer, fromHex("01 02 03 04 05 06"));
    buffer.MoveReadPosForward(5);
    EXPECT_EQ(toHex(drain(buffer)), "06");
}

TEST_F(RingBufferTest, SkipsExactlyToTheEndOfTheStorage) {
    RingBuffer buffer(8, &logger);
    const unsigned char* const storage = buffer.GetReadPosAddress();
    advance(buffer, 5);
    fill(buffer, fromHex("01 02 03 04"));
    buffer.MoveReadPosForward(3);
    EXPECT_EQ(buffer.GetReadPosAddress(), storage);
    EXPECT_EQ(toHex(drain(buffer)), "04");
}

TEST_F(RingBufferTest, WritesAndReadsAnArray) {
    RingBuffer buffer(8, &logger);
    writeArray(buffer, fromHex("01 02 03 04 05"));
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 5U);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 2U);
    EXPECT_EQ(toHex(readArray(buffer, 3)), "01 02 03");
    EXPECT_EQ(toHex(readArray(buffer, 2)), "04 05");
}

TEST_F(RingBufferTest, WritesAnArrayAcrossTheEndOfTheStorage) {
    RingBuffer buffer(8, &logger);
    const unsigned char* const storage = buffer.GetReadPosAddress();
    advance(buffer, 6);
    writeArray(buffer, fromHex("01 02 03 04 05"));
    EXPECT_EQ(toHex(Bytes(storage, storage + 3)), "03 04 05");
    EXPECT_EQ(toHex(Bytes(storage + 6, storage + 8)), "01 02");
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 2U);
    EXPECT_EQ(toHex(readArray(buffer, 7)), "01 02 03 04 05");
}

TEST_F(RingBufferTest, WritesAnEmptyArray) {
    RingBuffer buffer(8, &logger);
    writeArray(buffer, {});
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U);
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(RingBufferTest, ReadsWhatIsThereWhenMoreIsAskedFor) {
    RingBuffer buffer(8, &logger);
    fill(buffer, fromHex("01 02 03"));
    Bytes bytes(7, 0xEE);
    EXPECT_EQ(buffer.ReadByteArray(bytes.data(), 7), 3U);
    EXPECT_EQ(toHex(bytes), "01 02 03 EE EE EE EE");
    EXPECT_EQ(buffer.ReadByteArray(bytes.data(), 7), 0U);
    EXPECT_THAT(logger.messages, IsEmpty());
}

TEST_F(RingBufferTest, LeavesTheWriterAtTheEndAfterAnArrayThatEndsExactlyThere) {
    RingBuffer buffer(8, &logger);
    advance(buffer, 4);
    writeArray(buffer, fromHex("01 02 03 04"));
    // 8 - 4; a writer that had wrapped to the start would give the same count, but not the next.
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 4U);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 3U);
    EXPECT_EQ(toHex(readArray(buffer, 4)), "01 02 03 04");
    // The reader is back at the start, the writer is not: the count formula gives the whole size.
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 8U);
}

TEST_F(RingBufferTest, WritesTheNextArrayToTheStartAfterOneThatEndedExactlyAtTheEnd) {
    RingBuffer buffer(8, &logger);
    const unsigned char* const storage = buffer.GetReadPosAddress();
    advance(buffer, 4);
    writeArray(buffer, fromHex("01 02 03 04"));
    writeArray(buffer, fromHex("05 06"));
    EXPECT_EQ(toHex(Bytes(storage, storage + 2)), "05 06");
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 6U);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 1U);
    EXPECT_EQ(toHex(drain(buffer)), "01 02 03 04 05 06");
}

TEST_F(RingBufferTest, WritesTheNextByteToTheStartAfterAnArrayThatEndedExactlyAtTheEnd) {
    RingBuffer buffer(8, &logger);
    const unsigned char* const storage = buffer.GetReadPosAddress();
    advance(buffer, 4);
    writeArray(buffer, fromHex("01 02 03 04"));
    buffer.WriteUInt8(0x55);
    EXPECT_EQ(storage[0], 0x55);
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 5U);
    EXPECT_EQ(toHex(drain(buffer)), "01 02 03 04 55");
}

TEST_F(RingBufferTest, ReadsAndWritesSingleBytesAroundTheEndOfTheStorage) {
    RingBuffer buffer(4, &logger);
    for (unsigned int i = 0; i < 11; ++i) {
        buffer.write(static_cast<unsigned char>(i));
        EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 1U);
        EXPECT_EQ(buffer.read(), i);
    }
}

// The storage of a connection is never touched beyond what its messages need.
TEST_F(RingBufferTest, HoldsMessagesInAStorageAsLargeAsThatOfAConnection) {
    RingBuffer buffer(0x0FFFFFFF, &logger);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 268'435'454U);
    buffer.WriteUInt32(0xA1B2C3D4);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 268'435'450U);
    EXPECT_EQ(buffer.ReadUInt32(), 0xA1B2C3D4U);
}

} // namespace
