#include <chrono>

#include <gtest/gtest.h>

#include "headless/program/FramePacer.h"

using headless::FramePacer;
using Clock = std::chrono::steady_clock;

TEST(FramePacerTest, TheFirstFrameIsDueAtOnceAndTheOthersFollowEvenly) {
    const auto start = Clock::now();
    FramePacer pacer(200.0);
    for (int frame = 0; frame < 21; ++frame) {
        pacer.WaitForNextFrame();
    }
    // Twenty periods of 5 ms; deadlines are absolute, so never less.
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(100));
}

TEST(FramePacerTest, RestartMakesTheNextFrameDueNow) {
    FramePacer pacer(0.1);
    pacer.WaitForNextFrame();
    pacer.Restart();
    const auto start = Clock::now();
    pacer.WaitForNextFrame();
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(5));
}

TEST(FramePacerTest, TellsHowLongAFrameWas) {
    FramePacer pacer(100.0);
    EXPECT_EQ(pacer.WaitForNextFrame(), 0.01) << "the first one has the usual length";
    const auto start = Clock::now();
    while (Clock::now() - start < std::chrono::milliseconds(30)) {
    }
    EXPECT_GE(pacer.WaitForNextFrame(), 0.03);
    pacer.Restart();
    EXPECT_EQ(pacer.WaitForNextFrame(), 0.01);
}
