#include <gtest/gtest.h>

#include "tools/orvane/drive/DriveInput.h"

namespace {

using orvane::tool::InputSource;
using orvane::tool::openDriveInput;
using orvane::tool::Problems;
using orvane::tool::Profile;
using orvane::tool::ProfileInput;
using orvane::tool::Steps;
using orvane::tool::valueAt;
using orvane::tool::Wave;
using orvane::tool::Waveform;

TEST(MotionTest, AWaveSwingsAboutItsCentre) {
    const Wave wave{
        .waveform = Waveform::Square, .periodSeconds = 2, .amplitude = 0.5, .centre = -0.5};
    EXPECT_EQ(valueAt(wave, 0), 32768);
    EXPECT_EQ(valueAt(wave, 0.99), 32768);
    EXPECT_EQ(valueAt(wave, 1), 0);
    EXPECT_EQ(valueAt(wave, 2), 32768);
}

TEST(MotionTest, AWaveBeginsAtItsPhase) {
    const Wave wave{.waveform = Waveform::Triangle, .periodSeconds = 10, .phase = 0.25};
    EXPECT_EQ(valueAt(wave, 0), 65535);
    EXPECT_EQ(valueAt(wave, 5), 0);
}

TEST(MotionTest, StepsFollowOneAnotherAndBeginAnew) {
    const Steps steps{{100, -7, 120}, 0.5};
    EXPECT_EQ(valueAt(steps, 0), 100);
    EXPECT_EQ(valueAt(steps, 0.49), 100);
    EXPECT_EQ(valueAt(steps, 0.5), -7);
    EXPECT_EQ(valueAt(steps, 1.2), 120);
    EXPECT_EQ(valueAt(steps, 1.5), 100);
    EXPECT_EQ(valueAt(steps, 86'400.5), -7);
}

ProfileInput input(orvane::tarnel::ActionId action, bool isAxis) {
    ProfileInput result;
    result.action = action;
    result.isAxis = isAxis;
    return result;
}

TEST(DriveInputTest, AWaveformMovesTheAxesOfAProfileAndNothingElse) {
    Profile profile;
    profile.inputs = {input(4, true), input(5, false), input(6, true)};
    Problems problems;
    const InputSource source =
        openDriveInput("square", profile, {.periodSeconds = 2, .amplitude = 0.5}, problems);
    const auto high = source(0.9);
    ASSERT_TRUE(high);
    EXPECT_FALSE(high->seconds);
    ASSERT_EQ(high->items.size(), 2U);
    EXPECT_EQ(high->items[0].action, 4);
    EXPECT_EQ(high->items[0].value, 49151);
    EXPECT_EQ(high->items[1].action, 6);
    EXPECT_EQ(source(1.1)->items[0].value, 16384);
}

TEST(DriveInputTest, WithoutAnInputEachMovesAsItsProfileSays) {
    Profile profile;
    profile.inputs = {input(4, true), input(5, false), input(6, false)};
    profile.inputs[1].motion = Steps{{1, 0}, 1};
    profile.inputs[2].motion = Steps{{7}, 1};
    Problems problems;
    const auto row = openDriveInput("", profile, {}, problems)(1.5);
    ASSERT_EQ(row->items.size(), 2U);
    EXPECT_EQ(row->items[0].action, 5);
    EXPECT_EQ(row->items[0].value, 0);
    EXPECT_EQ(row->items[1].action, 6);
    EXPECT_EQ(row->items[1].value, 7);
}

} // namespace
