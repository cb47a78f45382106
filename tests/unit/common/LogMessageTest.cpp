#include "common/LogMessage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

TEST(LogMessageTest, JoinsTextsAndNumbers) {
    const std::uint32_t count = 12;
    EXPECT_EQ(logMessage({"Verbose@Class::operation : numBytes (", count, ") < size(", 20, ")"}),
              "Verbose@Class::operation : numBytes (12) < size(20)");
}

TEST(LogMessageTest, WritesNumbersInPlainDecimal) {
    EXPECT_EQ(logMessage({std::numeric_limits<std::uint64_t>::max()}), "18446744073709551615");
    EXPECT_EQ(logMessage({std::numeric_limits<std::int64_t>::min()}), "-9223372036854775808");
    EXPECT_EQ(logMessage({std::uint32_t{0xDDEEFFC0}}), "3723427776");
    EXPECT_EQ(logMessage({0}), "0");
}

TEST(LogMessageTest, IsEmptyWithoutPieces) {
    EXPECT_EQ(logMessage({}), "");
    EXPECT_EQ(logMessage({""}), "");
}

} // namespace
