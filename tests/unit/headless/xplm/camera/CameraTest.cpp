#include <gtest/gtest.h>

#include "XPLMCamera.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

namespace {

struct Pilot {
    int calls = 0;
    int losses = 0;
    int goesOn = 1;
};

int fly(XPLMCameraPosition_t* position, int losing, void* refcon) {
    auto& pilot = *static_cast<Pilot*>(refcon);
    if (losing != 0) {
        ++pilot.losses;
        EXPECT_EQ(position, nullptr);
        return 0;
    }
    ++pilot.calls;
    position->x = 12.0F;
    return pilot.goesOn;
}

} // namespace

class CameraTest : public ::testing::Test {
protected:
    Simulator sim;
    Pilot pilot;
};

TEST_F(CameraTest, FollowsWhoControlsIt) {
    XPLMControlCamera(xplm_ControlCameraForever, &fly, &pilot);
    XPLMCameraControlDuration duration = 0;
    EXPECT_EQ(XPLMIsCameraBeingControlled(&duration), 1);
    EXPECT_EQ(duration, xplm_ControlCameraForever);
    sim.RunFrame(0.1);
    XPLMCameraPosition_t position{};
    XPLMReadCameraPosition(&position);
    EXPECT_EQ(position.x, 12.0F);
    EXPECT_EQ(position.zoom, 1.0F);
    XPLMDontControlCamera();
    sim.RunFrame(0.1);
    EXPECT_EQ(pilot.calls, 1);
    EXPECT_EQ(XPLMIsCameraBeingControlled(nullptr), 0);
}

TEST_F(CameraTest, IsGivenBackByAnAnswerOfZero) {
    pilot.goesOn = 0;
    XPLMControlCamera(xplm_ControlCameraUntilViewChanges, &fly, &pilot);
    sim.RunFrame(0.1);
    sim.RunFrame(0.1);
    EXPECT_EQ(pilot.calls, 1);
    EXPECT_EQ(XPLMIsCameraBeingControlled(nullptr), 0);
}

TEST_F(CameraTest, WhoLosesItIsTold) {
    Pilot other;
    XPLMControlCamera(xplm_ControlCameraForever, &fly, &pilot);
    XPLMControlCamera(xplm_ControlCameraForever, &fly, &other);
    EXPECT_EQ(pilot.losses, 1);
    sim.RunFrame(0.1);
    EXPECT_EQ(other.calls, 1);
    EXPECT_EQ(pilot.calls, 0);
}
