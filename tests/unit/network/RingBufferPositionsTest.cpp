#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>

#include <gtest/gtest.h>

#include "RingBufferTest.h"

namespace {

// Values are copied in one piece if possible, so every position and every fill is a different case.
class RingBufferPositionsTest : public RingBufferTest {
protected:
    static constexpr int kSize = 16;

    RingBufferPositionsTest() { logger.throwsOnError = false; }

    // Calls `check` with a new buffer for each place of the reader and each number of bytes held.
    void forEachState(const std::function<void(RingBuffer&, int held)>& check) {
        for (int start = 0; start < kSize; ++start) {
            for (int held = 0; held < kSize; ++held) {
                SCOPED_TRACE(testing::Message() << "from " << start << " on " << held << " bytes");
                logger.messages.clear();
                RingBuffer buffer(kSize, &logger);
                advance(buffer, start);
                for (int i = 0; i < held; ++i) {
                    buffer.WriteUInt8(static_cast<std::uint8_t>(i));
                }
                check(buffer, held);
            }
        }
    }

    void expectReportOnlyIf(bool expected) const {
        EXPECT_EQ(logger.messages.size(), expected ? 1U : 0U);
    }
};

TEST_F(RingBufferPositionsTest, ReportsExactlyTheValuesThatDoNotFit) {
    forEachState([&](RingBuffer& buffer, int held) {
        buffer.WriteUInt32(0);
        expectReportOnlyIf(held > 11);
    });
    forEachState([&](RingBuffer& buffer, int held) {
        buffer.WriteUInt16(0);
        expectReportOnlyIf(held > 13);
    });
    forEachState([&](RingBuffer& buffer, int held) {
        buffer.WriteUInt8(0);
        expectReportOnlyIf(held > 14);
    });
}

TEST_F(RingBufferPositionsTest, ReportsExactlyTheMissingValues) {
    forEachState([&](RingBuffer& buffer, int held) {
        buffer.ReadUInt32();
        expectReportOnlyIf(held < 4);
    });
    forEachState([&](RingBuffer& buffer, int held) {
        buffer.ReadUInt16();
        expectReportOnlyIf(held < 2);
    });
    forEachState([&](RingBuffer& buffer, int held) {
        buffer.ReadUInt8();
        expectReportOnlyIf(held < 1);
    });
}

TEST_F(RingBufferPositionsTest, KeepsTheBytesOfAValueAndTheCounts) {
    forEachState([&](RingBuffer& buffer, int held) {
        if (held > 11) {
            return;
        }
        buffer.WriteUInt32(0x04030201);
        EXPECT_EQ(buffer.GetNumReadBytesAvailable(), static_cast<unsigned long>(held + 4));
        EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), static_cast<unsigned long>(11 - held));
        for (int i = 0; i < held; ++i) {
            EXPECT_EQ(buffer.ReadUInt8(), i);
        }
        EXPECT_EQ(buffer.ReadUInt32(), 0x04030201U);
        EXPECT_EQ(buffer.GetNumReadBytesAvailable(), 0U);
        EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 15U);
    });
}

TEST_F(RingBufferPositionsTest, ReadsBlocksOfEveryLength) {
    for (unsigned long length = 1; length <= 15; ++length) {
        forEachState([&](RingBuffer& buffer, int held) {
            const unsigned long expected = std::min(length, static_cast<unsigned long>(held));
            const Bytes block = readArray(buffer, length);
            ASSERT_EQ(block.size(), expected);
            for (std::size_t i = 0; i < expected; ++i) {
                EXPECT_EQ(block[i], i);
            }
            const unsigned long left = static_cast<unsigned long>(held) - expected;
            EXPECT_EQ(buffer.GetNumReadBytesAvailable(), left);
            EXPECT_EQ(buffer.GetNumWriteBytesAvailable(), 15 - left);
        });
    }
}

} // namespace
