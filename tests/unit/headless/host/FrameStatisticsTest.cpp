#include <gtest/gtest.h>

#include "headless/host/FrameStatistics.h"

using headless::FrameStatistics;
using std::chrono::nanoseconds;

TEST(FrameStatisticsTest, StartsAtZero) {
    const FrameStatistics statistics;
    EXPECT_EQ(statistics.Mean(), nanoseconds(0));
    EXPECT_EQ(statistics.Summary(), "frames 0, plugin time per frame: worst 0.0 us, mean 0.0 us");
}

TEST(FrameStatisticsTest, TellsWorstAndMeanInMicroseconds) {
    FrameStatistics statistics;
    statistics.Add(nanoseconds(1000));
    statistics.Add(nanoseconds(4500));
    statistics.Add(nanoseconds(2000));
    EXPECT_EQ(statistics.Frames(), 3);
    EXPECT_EQ(statistics.Worst(), nanoseconds(4500));
    EXPECT_EQ(statistics.Summary(), "frames 3, plugin time per frame: worst 4.5 us, mean 2.5 us");
}
