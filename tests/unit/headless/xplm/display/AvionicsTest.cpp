#include <gtest/gtest.h>

#include "XPLMDisplay.h"
#include "headless/xplm/Simulator.h"

using headless::Refusal;
using headless::Simulator;

class AvionicsTest : public ::testing::Test {
protected:
    static XPLMAvionicsID make() {
        XPLMCreateAvionics_t device{};
        device.structSize = sizeof device;
        device.bezelWidth = 400;
        device.bezelHeight = 300;
        device.deviceID = "tests.device";
        return XPLMCreateAvionicsEx(&device);
    }

    Simulator sim;
};

TEST_F(AvionicsTest, ADeviceKeepsWhatItIsTold) {
    const XPLMAvionicsID device = make();
    XPLMSetAvionicsBrightnessRheo(device, 0.5F);
    EXPECT_EQ(XPLMGetAvionicsBrightnessRheo(device), 0.5F);
    EXPECT_EQ(XPLMGetAvionicsBusVoltsRatio(device), 1.0F);
    EXPECT_EQ(XPLMIsAvionicsPopupVisible(device), 0);
    XPLMSetAvionicsPopupVisible(device, 1);
    EXPECT_EQ(XPLMIsAvionicsPopupVisible(device), 1);
    EXPECT_EQ(XPLMIsAvionicsPoppedOut(device), 0);
    XPLMPopOutAvionics(device);
    EXPECT_EQ(XPLMIsAvionicsPoppedOut(device), 1);
    XPLMTakeAvionicsKeyboardFocus(device);
    EXPECT_EQ(XPLMHasAvionicsKeyboardFocus(device), 1);
    int right = 0;
    int top = 0;
    XPLMGetAvionicsGeometry(device, nullptr, &top, &right, nullptr);
    EXPECT_EQ(right, 400);
    EXPECT_EQ(top, 300);
    XPLMSetAvionicsGeometryOS(device, 1, 4, 3, 2);
    XPLMGetAvionicsGeometryOS(device, nullptr, &top, &right, nullptr);
    EXPECT_EQ(right, 3);
    EXPECT_EQ(top, 4);
    EXPECT_EQ(XPLMIsAvionicsBound(device), 0);
    int x = 7;
    EXPECT_EQ(XPLMIsCursorOverAvionics(device, &x, nullptr), 0);
    EXPECT_EQ(x, 0);
}

TEST_F(AvionicsTest, OneOfTheSimulatorsHasOneHandle) {
    XPLMCustomizeAvionics_t custom{};
    custom.structSize = sizeof custom;
    custom.deviceId = 3;
    const XPLMAvionicsID device = XPLMRegisterAvionicsCallbacksEx(&custom);
    EXPECT_EQ(XPLMGetAvionicsHandle(3), device);
    EXPECT_NE(XPLMGetAvionicsHandle(4), device);
    XPLMUnregisterAvionicsCallbacks(device);
    XPLMPopOutAvionics(device);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownHandle), 1U);
}

TEST_F(AvionicsTest, ADestroyedDeviceIsGone) {
    const XPLMAvionicsID device = make();
    XPLMTakeAvionicsKeyboardFocus(device);
    XPLMDestroyAvionics(device);
    EXPECT_EQ(XPLMHasAvionicsKeyboardFocus(device), 0);
    EXPECT_EQ(XPLMGetAvionicsBrightnessRheo(device), 0.0F);
}
