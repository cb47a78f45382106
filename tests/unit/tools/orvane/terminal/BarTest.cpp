#include <gtest/gtest.h>

#include "tools/orvane/terminal/Bar.h"

using orvane::tool::bar;

namespace {

TEST(BarTest, GrowsByAnEighthOfAColumn) {
    EXPECT_EQ(bar(0, true), "");
    EXPECT_EQ(bar(0.125, true), "▏");
    EXPECT_EQ(bar(0.5, true), "▌");
    EXPECT_EQ(bar(2.75, true), "██▊");
    EXPECT_EQ(bar(2.99, true), "███");
}

TEST(BarTest, GrowsByAColumnWithoutUnicode) {
    EXPECT_EQ(bar(0.4, false), "");
    EXPECT_EQ(bar(2.6, false), "###");
}

} // namespace
