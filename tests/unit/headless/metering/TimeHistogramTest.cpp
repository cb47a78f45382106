#include <gtest/gtest.h>

#include "headless/metering/TimeHistogram.h"

using headless::TimeHistogram;
using namespace std::chrono_literals;

TEST(TimeHistogramTest, IsZeroWhenThereAreNoTimes) {
    const TimeHistogram none;
    EXPECT_EQ(none.Count(), 0U);
    EXPECT_EQ(none.Mean(), 0ns);
    EXPECT_EQ(none.Worst(), 0ns);
    EXPECT_EQ(none.Quantile(0.99), 0ns);
}

TEST(TimeHistogramTest, SmallTimesAreExact) {
    TimeHistogram times;
    for (const auto time : {3ns, 1ns, 2ns, 10ns}) {
        times.Add(time);
    }
    EXPECT_EQ(times.Count(), 4U);
    EXPECT_EQ(times.Mean(), 4ns);
    EXPECT_EQ(times.Quantile(0.5), 2ns);
    EXPECT_EQ(times.Quantile(0.75), 3ns);
    EXPECT_EQ(times.Quantile(1.0), 10ns);
    EXPECT_EQ(times.Worst(), 10ns);
}

TEST(TimeHistogramTest, QuantilesAreAtMostASixtyFourthTooLong) {
    TimeHistogram times;
    for (int i = 1; i <= 100'000; ++i) {
        times.Add(std::chrono::nanoseconds(i * 17));
    }
    for (const double part : {0.01, 0.5, 0.9, 0.99, 0.999}) {
        const double exact = part * 1'700'000;
        const auto found = static_cast<double>(times.Quantile(part).count());
        EXPECT_GE(found, exact - 17) << part;
        EXPECT_LE(found, exact * (1 + 1.0 / 64)) << part;
    }
}

TEST(TimeHistogramTest, NoTimeIsTooLong) {
    TimeHistogram times;
    times.Add(1us);
    times.Add(100h);
    EXPECT_EQ(times.Worst(), 100h);
    EXPECT_LE(times.Quantile(0.5), 1016ns);
    EXPECT_EQ(times.Quantile(0.99), 100h);
}

TEST(TimeHistogramTest, AClockThatStepsBackCountsAsNothing) {
    TimeHistogram times;
    times.Add(-5ns);
    EXPECT_EQ(times.Worst(), 0ns);
    EXPECT_EQ(times.Count(), 1U);
}
