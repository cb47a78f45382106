#include <gtest/gtest.h>

#include "tools/orvane/drive/Waveform.h"

namespace {

using orvane::tool::axisValue;
using orvane::tool::levelOf;
using orvane::tool::Waveform;
using orvane::tool::waveformNamed;

constexpr double kTolerance = 1e-9;

TEST(WaveformTest, IsKnownByItsName) {
    EXPECT_EQ(waveformNamed("sine"), Waveform::Sine);
    EXPECT_EQ(waveformNamed("triangle"), Waveform::Triangle);
    EXPECT_EQ(waveformNamed("square"), Waveform::Square);
    EXPECT_EQ(waveformNamed("sweep"), Waveform::Sweep);
    EXPECT_FALSE(waveformNamed("Sine"));
    EXPECT_FALSE(waveformNamed("sine.csv"));
}

TEST(WaveformTest, SineAndTriangleBeginInTheMiddleAndRise) {
    for (const Waveform waveform : {Waveform::Sine, Waveform::Triangle}) {
        EXPECT_NEAR(levelOf(waveform, 0), 0, kTolerance);
        EXPECT_NEAR(levelOf(waveform, 0.25), 1, kTolerance);
        EXPECT_NEAR(levelOf(waveform, 0.5), 0, kTolerance);
        EXPECT_NEAR(levelOf(waveform, 0.75), -1, kTolerance);
        EXPECT_NEAR(levelOf(waveform, 7.25), 1, kTolerance);
    }
    EXPECT_NEAR(levelOf(Waveform::Triangle, 0.125), 0.5, kTolerance);
    EXPECT_NEAR(levelOf(Waveform::Sine, 1.0 / 12), 0.5, kTolerance);
}

TEST(WaveformTest, SquareIsHighForHalfAPeriod) {
    EXPECT_EQ(levelOf(Waveform::Square, 0), 1);
    EXPECT_EQ(levelOf(Waveform::Square, 0.49), 1);
    EXPECT_EQ(levelOf(Waveform::Square, 0.5), -1);
    EXPECT_EQ(levelOf(Waveform::Square, 3.99), -1);
}

TEST(WaveformTest, SweepGetsTenTimesAsFastOverTenPeriods) {
    const auto crossings = [](double from, double to) {
        int count = 0;
        constexpr double kStep = 1e-4;
        for (double at = from; at + kStep < to; at += kStep) {
            const bool before = levelOf(Waveform::Sweep, at) >= 0;
            count += before != (levelOf(Waveform::Sweep, at + kStep) >= 0) ? 1 : 0;
        }
        return count;
    };
    // One oscillation crosses the middle twice; 1.45 of them in the first period, 9.55 in the last.
    EXPECT_NEAR(crossings(0.0001, 1), 2, 1);
    EXPECT_NEAR(crossings(9, 10), 19, 1);
    EXPECT_NEAR(levelOf(Waveform::Sweep, 10.2), levelOf(Waveform::Sweep, 0.2), kTolerance);
}

TEST(WaveformTest, AxesGoFromZeroTo65535) {
    EXPECT_EQ(axisValue(-1), 0);
    EXPECT_EQ(axisValue(0), 32768);
    EXPECT_EQ(axisValue(0.5), 49151);
    EXPECT_EQ(axisValue(1), 65535);
    EXPECT_EQ(axisValue(1.5), 65535);
    EXPECT_EQ(axisValue(-7), 0);
}

} // namespace
