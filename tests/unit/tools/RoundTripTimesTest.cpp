#include "tools/demo/RoundTripTimes.h"

#include <gtest/gtest.h>

using demo::RoundTripTimes;
using std::chrono::microseconds;

TEST(RoundTripTimesTest, IsAllZeroBeforeTheFirstAnswer) {
    const RoundTripTimes times;
    EXPECT_EQ(times.Count(), 0U);
    EXPECT_EQ(times.Last(), microseconds(0));
    EXPECT_EQ(times.Minimum(), microseconds(0));
    EXPECT_EQ(times.Median(), microseconds(0));
    EXPECT_EQ(times.Percentile95(), microseconds(0));
    EXPECT_EQ(times.Maximum(), microseconds(0));
}

TEST(RoundTripTimesTest, TakesEveryStatisticFromASingleTime) {
    RoundTripTimes times;
    times.Add(microseconds(7));
    EXPECT_EQ(times.Minimum(), microseconds(7));
    EXPECT_EQ(times.Median(), microseconds(7));
    EXPECT_EQ(times.Percentile95(), microseconds(7));
    EXPECT_EQ(times.Maximum(), microseconds(7));
}

TEST(RoundTripTimesTest, OrdersTheTimesForItsStatisticsOnly) {
    RoundTripTimes times;
    for (const int time : {50, 10, 40, 20, 30}) {
        times.Add(microseconds(time));
    }
    EXPECT_EQ(times.Count(), 5U);
    EXPECT_EQ(times.Last(), microseconds(30));
    EXPECT_EQ(times.Minimum(), microseconds(10));
    EXPECT_EQ(times.Median(), microseconds(30));
    EXPECT_EQ(times.Maximum(), microseconds(50));
}

TEST(RoundTripTimesTest, LeavesFiveOfAHundredAboveThePercentile) {
    RoundTripTimes times;
    for (int time = 100; time >= 1; --time) {
        times.Add(microseconds(time));
    }
    EXPECT_EQ(times.Percentile95(), microseconds(95));
    EXPECT_EQ(times.Median(), microseconds(50));
}
