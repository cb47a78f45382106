#include <chrono>

#include <gtest/gtest.h>

#include "headless/xplm/Clock.h"

using headless::Clock;

TEST(ClockTest, StandsStillBetweenFramesUnlessItIsRealTime) {
    Clock clock;
    clock.Advance(2.5);
    EXPECT_EQ(clock.Elapsed(), 2.5);
    clock.SetRealTime(true);
    const auto begin = std::chrono::steady_clock::now();
    while (clock.Elapsed() < 2.51) {
        ASSERT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    }
    EXPECT_EQ(clock.Now(), 2.5);
    EXPECT_EQ(clock.Frame(), 1);
}
