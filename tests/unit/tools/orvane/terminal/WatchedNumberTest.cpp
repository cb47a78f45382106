#include <deque>
#include <string>

#include <gtest/gtest.h>

#include "tools/orvane/terminal/WatchedNumber.h"

using orvane::tool::WatchedNumber;
using std::chrono::milliseconds;

namespace {

TEST(WatchedNumberTest, RemembersTheExtremesAndTheLatest) {
    WatchedNumber number;
    const WatchedNumber::TimePoint now;
    number.See(2.0, "2", now);
    EXPECT_EQ(number.Minimum(), "2");
    EXPECT_EQ(number.Maximum(), "2");
    for (int i = 0; i < 25; ++i) {
        number.See(i, std::to_string(i), now);
    }
    EXPECT_EQ(number.Text(), "24");
    EXPECT_EQ(number.Minimum(), "0");
    EXPECT_EQ(number.Maximum(), "24");
    ASSERT_EQ(number.History().size(), 20U);
    EXPECT_EQ(number.History().front(), 5.0);
}

TEST(WatchedNumberTest, RemembersAValueForEachInterval) {
    WatchedNumber number(milliseconds(200));
    const WatchedNumber::TimePoint start;
    for (int i = 0; i <= 10; ++i) {
        number.See(i, std::to_string(i), start + milliseconds(50 * i));
    }
    EXPECT_EQ(number.History(), (std::deque<double>{3, 7, 10}));
}

TEST(WatchedNumberTest, RemembersAChangeForHalfASecond) {
    WatchedNumber number;
    const WatchedNumber::TimePoint start;
    number.See(1.0, "1", start);
    EXPECT_FALSE(number.HasChanged());
    number.See(2.0, "2", start + milliseconds(200));
    EXPECT_TRUE(number.HasChanged());
    number.See(2.0, "2", start + milliseconds(699));
    EXPECT_TRUE(number.HasChanged());
    number.See(2.0, "2", start + milliseconds(700));
    EXPECT_FALSE(number.HasChanged());
}

} // namespace
