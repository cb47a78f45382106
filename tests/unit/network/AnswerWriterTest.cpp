#include <cstdint>
#include <numeric>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "network/AnswerWriter.h"
#include "network/RingBuffer.h"
#include "support/Bytes.h"
#include "support/RecordingLogger.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AnswerWriterTest : public testing::Test {
protected:
    AnswerWriterTest() { logger.throwsOnError = false; }

    // Moves both positions of an empty buffer forward.
    static void advance(RingBuffer& buffer, int count) {
        for (int i = 0; i < count; ++i) {
            buffer.WriteUInt8(0xEE);
            buffer.ReadUInt8();
        }
    }

    static std::vector<std::int32_t> numbers(std::size_t count) {
        std::vector<std::int32_t> values(count);
        std::iota(values.begin(), values.end(), 1);
        return values;
    }

    RecordingLogger logger;
};

TEST_F(AnswerWriterTest, WritesValuesLittleEndianInTheirOrder) {
    RingBuffer buffer(64, &logger);
    {
        AnswerWriter writer(&buffer);
        writer.WriteUInt32(0x01020304);
        writer.WriteInt32(-2);
        writer.WriteFloat(1.0F);
        writer.WriteUInt8(7);
    }
    EXPECT_EQ(toHex(drain(buffer)), "04 03 02 01 FE FF FF FF 00 00 80 3F 07");
}

TEST_F(AnswerWriterTest, WritesArraysAsTheirElementsInARow) {
    RingBuffer buffer(64, &logger);
    {
        AnswerWriter writer(&buffer);
        const std::vector<std::int32_t> ints = {1, -1};
        const std::vector<float> floats = {1.0F, -1.0F};
        writer.WriteInt32s(ints.data(), ints.size());
        writer.WriteFloats(floats.data(), floats.size());
        writer.WriteInt32s(nullptr, 0);
    }
    EXPECT_EQ(toHex(drain(buffer)), "01 00 00 00 FF FF FF FF 00 00 80 3F 00 00 80 BF");
}

TEST_F(AnswerWriterTest, WritesNothingWhenNothingWasGathered) {
    RingBuffer buffer(16, &logger);
    { const AnswerWriter writer(&buffer); }
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U);
}

TEST_F(AnswerWriterTest, KeepsTheOrderOfLongAnswers) {
    RingBuffer buffer(100'000, &logger);
    const std::vector<std::int32_t> many = numbers(5000);
    {
        AnswerWriter writer(&buffer);
        writer.WriteUInt8(9);
        for (std::int32_t value = 1; value <= 3000; ++value) {
            writer.WriteInt32(value);
        }
        writer.WriteInt32s(many.data(), many.size());
        writer.WriteUInt8(8);
    }
    EXPECT_EQ(buffer.ReadUInt8(), 9);
    for (std::int32_t value = 1; value <= 3000; ++value) {
        ASSERT_EQ(buffer.ReadInt32(), value);
    }
    for (std::int32_t value = 1; value <= 5000; ++value) {
        ASSERT_EQ(buffer.ReadInt32(), value);
    }
    EXPECT_EQ(toHex(drain(buffer)), "08");
}

TEST_F(AnswerWriterTest, CountsTheRoomAfterWhatWasGathered) {
    RingBuffer buffer(64, &logger);
    AnswerWriter writer(&buffer);
    EXPECT_EQ(writer.Room(), 63U);
    writer.WriteUInt32(1);
    writer.WriteUInt8(2);
    EXPECT_EQ(writer.Room(), 58U);
}

// A block that ends at the end of the storage would leave the position there, and a reader who gets
// there would find the buffer full.
TEST_F(AnswerWriterTest, WrapsAtTheEndOfTheStorageAsValuesDo) {
    RingBuffer buffer(16, &logger);
    advance(buffer, 4);
    {
        AnswerWriter writer(&buffer);
        writer.WriteUInt32(0x11111111);
        writer.WriteUInt32(0x22222222);
        writer.WriteUInt32(0x33333333);
    }
    EXPECT_EQ(toHex(drain(buffer)), "11 11 11 11 22 22 22 22 33 33 33 33");
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U);
    EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 15U);
}

TEST_F(AnswerWriterTest, WrapsAfterALongArrayAsItsElementsWould) {
    RingBuffer buffer(8192, &logger);
    advance(buffer, 192);
    const std::vector<std::int32_t> values = numbers(2000);
    {
        AnswerWriter writer(&buffer);
        writer.WriteInt32s(values.data(), values.size());
    }
    EXPECT_EQ(drain(buffer).size(), 8000U);
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U);
}

TEST_F(AnswerWriterTest, LeavesTheBlockWriteOfTheRingBufferAsItIs) {
    RingBuffer buffer(16, &logger);
    advance(buffer, 8);
    Bytes block = fromHex("05 06 07 08");
    {
        AnswerWriter writer(&buffer);
        writer.WriteUInt32(0x04030201);
        writer.WriteByteArray(block.data(), block.size());
    }
    // Up to the end of the storage, where a block leaves the position.
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 8U);
    Bytes received(8);
    buffer.ReadByteArray(received.data(), received.size());
    EXPECT_EQ(toHex(received), "01 02 03 04 05 06 07 08");
    EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 16U);
}

TEST_F(AnswerWriterTest, ReportsTheFirstValueThatDoesNotFit) {
    RingBuffer buffer(8, &logger);
    {
        AnswerWriter writer(&buffer);
        writer.WriteUInt32(1);
        EXPECT_THAT(logger.messages, IsEmpty());
        writer.WriteInt32(2);
    }
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4"));
}

TEST_F(AnswerWriterTest, ReportsEachKindOfValueByTheNameOfItsOwnWrite) {
    RingBuffer buffer(1, &logger);
    const auto reportOf = [&](auto write) {
        logger.messages.clear();
        AnswerWriter writer(&buffer);
        write(writer);
        return logger.At(LogLevelError).at(0);
    };
    EXPECT_EQ(reportOf([](AnswerWriter& writer) { writer.WriteUInt32(1); }),
              "Error@RingBuffer::WriteUInt32 : GetNumWriteBytesAvailable() < 4");
    EXPECT_EQ(reportOf([](AnswerWriter& writer) { writer.WriteFloat(1.0F); }),
              "Error@RingBuffer::WriteFloat : GetNumWriteBytesAvailable() < 4");
    EXPECT_EQ(reportOf([](AnswerWriter& writer) { writer.WriteUInt8(1); }),
              "Error@RingBuffer::WriteUInt8 : GetNumWriteBytesAvailable() < 1");
    Bytes block = {1, 2};
    EXPECT_EQ(reportOf([&](AnswerWriter& writer) { writer.WriteByteArray(block.data(), 2); }),
              "Error@RingBuffer::WriteByteArray : GetNumWriteBytesAvailable() < length");
}

TEST_F(AnswerWriterTest, ReportsAnArrayThatDoesNotFitByItsFirstElementWithoutRoom) {
    logger.throwsOnError = true;
    RingBuffer buffer(16, &logger);
    const std::vector<std::int32_t> values = numbers(5);
    AnswerWriter writer(&buffer);
    EXPECT_THROW(writer.WriteInt32s(values.data(), values.size()), FatalReport);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@RingBuffer::WriteInt32 : GetNumWriteBytesAvailable() < 4"));
    EXPECT_EQ(toHex(drain(buffer)), "01 00 00 00 02 00 00 00 03 00 00 00");
}

// Whatever the positions and the room: the same bytes, counts and reports.
TEST_F(AnswerWriterTest, LeavesTheRingBufferAsValuesOnTheirOwnWould) {
    const std::vector<std::int32_t> array = numbers(3);
    const auto writeTo = [&](auto& out, int values) {
        for (int i = 0; i < values; ++i) {
            out.WriteUInt32(static_cast<std::uint32_t>(i));
            out.WriteUInt8(static_cast<std::uint8_t>(i));
        }
    };
    for (int start = 0; start < 32; ++start) {
        for (int values = 0; values < 6; ++values) {
            RecordingLogger expectedLogger;
            expectedLogger.throwsOnError = false;
            RingBuffer expected(32, &expectedLogger);
            logger.messages.clear();
            RingBuffer buffer(32, &logger);
            advance(expected, start);
            advance(buffer, start);

            writeTo(expected, values);
            for (const std::int32_t element : array) {
                expected.WriteInt32(element);
            }
            {
                AnswerWriter writer(&buffer);
                writeTo(writer, values);
                writer.WriteInt32s(array.data(), array.size());
            }

            EXPECT_EQ(logger.messages, expectedLogger.messages) << start << ' ' << values;
            EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), expected.GetNumWriteBytesAvailable());
            EXPECT_EQ(drain(buffer), drain(expected)) << start << ' ' << values;
            EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U) << start << ' ' << values;
        }
    }
}

} // namespace
