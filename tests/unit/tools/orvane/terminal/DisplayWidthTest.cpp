#include <clocale>
#include <string>

#include <gtest/gtest.h>

#include "tools/orvane/terminal/DisplayWidth.h"

using orvane::tool::beginningOf;
using orvane::tool::displayWidth;
using orvane::tool::endOf;
using orvane::tool::leftAligned;

namespace {

// An e with a combining accent.
constexpr const char* kAccented = "e\u0301";

TEST(DisplayWidthTest, CountsColumnsInsteadOfBytes) {
    EXPECT_EQ(displayWidth(""), 0U);
    EXPECT_EQ(displayWidth("kt"), 2U);
    EXPECT_EQ(displayWidth("°C"), 2U);
    EXPECT_EQ(displayWidth("m/s²"), 4U);
    EXPECT_EQ(displayWidth(kAccented), 1U);
    EXPECT_EQ(displayWidth("速度"), 4U);
    EXPECT_EQ(displayWidth("🛩"), 1U);
    EXPECT_EQ(displayWidth("🚀"), 2U);
}

TEST(DisplayWidthTest, CountsABrokenByteAsAColumn) {
    EXPECT_EQ(displayWidth("\xC2"), 1U);
    EXPECT_EQ(displayWidth("a\xFF\xFE"), 3U);
    EXPECT_EQ(displayWidth(std::string_view("a\0b", 3)), 3U);
}

TEST(DisplayWidthTest, CutsBetweenCharacters) {
    EXPECT_EQ(beginningOf("°C/min", 2), "°C");
    EXPECT_EQ(beginningOf("速度", 3), "速");
    EXPECT_EQ(beginningOf("abc", 0), "");
    EXPECT_EQ(beginningOf("abc", 7), "abc");
    EXPECT_EQ(beginningOf(kAccented, 1), kAccented);
    EXPECT_EQ(endOf("min/°C", 2), "°C");
    EXPECT_EQ(endOf("速度", 3), "度");
    EXPECT_EQ(endOf("abc", 0), "");
    EXPECT_EQ(endOf("abc", 7), "abc");
    EXPECT_EQ(endOf(std::string(kAccented) + "x", 1), "x");
}

TEST(DisplayWidthTest, AlignsByColumns) {
    EXPECT_EQ(leftAligned("°C", 4), "°C  ");
    EXPECT_EQ(leftAligned("abc", 2), "abc");
}

TEST(DisplayWidthTest, DoesNotDependOnTheLocale) {
    ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
    EXPECT_EQ(displayWidth("速度"), 4U);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C");
}

} // namespace
