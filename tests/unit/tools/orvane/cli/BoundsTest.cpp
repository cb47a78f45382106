#include <CLI/CLI.hpp>
#include <gtest/gtest.h>

#include "tools/orvane/cli/Bounds.h"

using orvane::tool::between;
using orvane::tool::wholeBetween;

namespace {

TEST(BoundsTest, TakeWhatIsWithin) {
    const CLI::Validator seconds = between(0.0, 31'536'000.0);
    for (const char* const text : {"0", "0.5", "5e-3", "31536000"}) {
        EXPECT_EQ(seconds(text), "") << text;
    }
    EXPECT_EQ(wholeBetween(1, 65535)("65535"), "");
}

TEST(BoundsTest, SayWhatIsNotANumber) {
    EXPECT_EQ(between(0.0, 1.0)("5s"), "\"5s\" is not a number");
    EXPECT_EQ(between(0.0, 1.0)(""), "\"\" is not a number");
    EXPECT_EQ(wholeBetween(1, 9)("2.5"), "\"2.5\" is not a whole number");
    EXPECT_EQ(wholeBetween(1, 9)("two"), "\"two\" is not a whole number");
}

TEST(BoundsTest, NameTheBoundsAsAPersonWould) {
    EXPECT_EQ(between(0.0, 31'536'000.0, "0 and a year")("1e9"), "1e9 is not between 0 and a year");
    EXPECT_EQ(between(0.001, 1000.0)("0"), "0 is not between 0.001 and 1000");
    EXPECT_EQ(between(0.0, 1.0)("nan"), "nan is not between 0 and 1");
    EXPECT_EQ(between(0.0, 1.0)("1e999"), "1e999 is not between 0 and 1");
    EXPECT_EQ(wholeBetween(1, 65535)("-1"), "-1 is not between 1 and 65535");
    EXPECT_EQ(wholeBetween(1, 65535)("99999999999999999999"),
              "99999999999999999999 is not between 1 and 65535");
}

} // namespace
