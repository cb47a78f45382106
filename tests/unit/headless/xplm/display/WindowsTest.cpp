#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "XPLMDisplay.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/display/Windows.h"

using headless::Refusal;
using headless::Simulator;

namespace {

std::string events;

int onClick(XPLMWindowID /*window*/, int x, int y, XPLMMouseStatus status, void* refcon) {
    events += static_cast<const char*>(refcon);
    events += " click " + std::to_string(x) + "," + std::to_string(y) + " " +
              std::to_string(status) + "\n";
    return 1;
}

void onKey(XPLMWindowID /*window*/, char key, XPLMKeyFlags /*flags*/, char /*virtualKey*/,
           void* refcon, int losingFocus) {
    events += static_cast<const char*>(refcon);
    events += losingFocus != 0 ? " loses\n" : std::string(" key ") + key + "\n";
}

char one[] = "one";
char two[] = "two";

} // namespace

class WindowsTest : public ::testing::Test {
protected:
    WindowsTest() { events.clear(); }

    static XPLMWindowID make(char* refcon) {
        XPLMCreateWindow_t window{};
        window.structSize = sizeof window;
        window.left = 100;
        window.top = 400;
        window.right = 300;
        window.bottom = 200;
        window.visible = 1;
        window.handleMouseClickFunc = &onClick;
        window.handleKeyFunc = &onKey;
        window.refcon = refcon;
        return XPLMCreateWindowEx(&window);
    }

    static std::string geometryOf(XPLMWindowID window) {
        int left = 0;
        int top = 0;
        int right = 0;
        int bottom = 0;
        XPLMGetWindowGeometry(window, &left, &top, &right, &bottom);
        return std::to_string(left) + "," + std::to_string(top) + "," + std::to_string(right) +
               "," + std::to_string(bottom);
    }

    Simulator sim;
};

TEST_F(WindowsTest, KeepWhatTheyAreTold) {
    const XPLMWindowID window = make(one);
    EXPECT_EQ(geometryOf(window), "100,400,300,200");
    EXPECT_EQ(XPLMGetWindowIsVisible(window), 1);
    XPLMSetWindowGeometry(window, 1, 4, 3, 2);
    EXPECT_EQ(geometryOf(window), "1,4,3,2");
    XPLMGetWindowGeometry(window, nullptr, nullptr, nullptr, nullptr);
    XPLMSetWindowIsVisible(window, 0);
    EXPECT_EQ(XPLMGetWindowIsVisible(window), 0);
    EXPECT_EQ(XPLMGetWindowRefCon(window), one);
    XPLMSetWindowRefCon(window, two);
    EXPECT_EQ(XPLMGetWindowRefCon(window), two);
    XPLMSetWindowTitle(window, "A title");
    EXPECT_EQ(sim.Windows().Resolve(window)->title, "A title");
    XPLMSetWindowGeometryVR(window, 30, 20);
    int width = 0;
    int height = 0;
    XPLMGetWindowGeometryVR(window, &width, &height);
    EXPECT_EQ(width, 30);
    EXPECT_EQ(height, 20);
}

TEST_F(WindowsTest, AreFilledCentredAndPoppedOut) {
    const XPLMWindowID window = make(one);
    XPLMSetWindowPositioningMode(window, xplm_WindowCenterOnMonitor, -1);
    EXPECT_EQ(geometryOf(window), "860,640,1060,440");
    XPLMSetWindowPositioningMode(window, xplm_WindowFullScreenOnMonitor, 0);
    EXPECT_EQ(geometryOf(window), "0,1080,1920,0");
    EXPECT_EQ(XPLMWindowIsPoppedOut(window), 0);
    XPLMSetWindowPositioningMode(window, xplm_WindowPopOut, -1);
    EXPECT_EQ(XPLMWindowIsPoppedOut(window), 1);
    XPLMSetWindowPositioningMode(window, xplm_WindowVR, -1);
    EXPECT_EQ(XPLMWindowIsInVR(window), 0) << "there is no headset";
}

TEST_F(WindowsTest, OneIsInFrontAndGetsTheClick) {
    const XPLMWindowID back = make(one);
    const XPLMWindowID front = make(two);
    EXPECT_EQ(XPLMIsWindowInFront(front), 1);
    XPLMBringWindowToFront(back);
    EXPECT_EQ(XPLMIsWindowInFront(back), 1);
    EXPECT_EQ(XPLMIsWindowInFront(front), 0);
    EXPECT_TRUE(sim.Windows().Click(150, 250, xplm_MouseDown));
    XPLMSetWindowIsVisible(back, 0);
    EXPECT_TRUE(sim.Windows().Click(150, 250, xplm_MouseUp));
    EXPECT_FALSE(sim.Windows().Click(0, 0, xplm_MouseDown));
    EXPECT_EQ(events, "one click 150,250 1\ntwo click 150,250 3\n");
}

TEST_F(WindowsTest, TheKeyboardGoesFromOneToAnother) {
    const XPLMWindowID first = make(one);
    const XPLMWindowID second = make(two);
    EXPECT_EQ(XPLMHasKeyboardFocus(nullptr), 1);
    XPLMTakeKeyboardFocus(first);
    EXPECT_EQ(XPLMHasKeyboardFocus(first), 1);
    EXPECT_TRUE(sim.Windows().PressKey('a', xplm_DownFlag, 'A'));
    XPLMTakeKeyboardFocus(second);
    XPLMTakeKeyboardFocus(nullptr);
    EXPECT_FALSE(sim.Windows().PressKey('b', xplm_DownFlag, 'B'));
    EXPECT_EQ(events, "one key a\none loses\ntwo loses\n");
}

TEST_F(WindowsTest, ADestroyedOneIsGone) {
    const XPLMWindowID window = make(one);
    XPLMTakeKeyboardFocus(window);
    XPLMDestroyWindow(window);
    EXPECT_EQ(geometryOf(window), "0,0,0,0");
    EXPECT_EQ(XPLMHasKeyboardFocus(nullptr), 1);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownHandle), 1U);
    EXPECT_EQ(XPLMCreateWindowEx(nullptr), nullptr);
}

TEST_F(WindowsTest, AStructureOfAnOlderSdkIsUnderstood) {
    XPLMCreateWindow_t window{};
    window.structSize = offsetof(XPLMCreateWindow_t, decorateAsFloatingWindow);
    window.right = 10;
    window.top = 5;
    window.layer = xplm_WindowLayerModal;
    const XPLMWindowID made = XPLMCreateWindowEx(&window);
    EXPECT_EQ(geometryOf(made), "0,5,10,0");
    EXPECT_EQ(sim.Windows().Resolve(made)->parameters.layer, xplm_WindowLayerFloatingWindows);
    EXPECT_EQ(geometryOf(XPLMCreateWindow(1, 4, 3, 2, 1, nullptr, nullptr, nullptr, nullptr)),
              "1,4,3,2");
}

TEST_F(WindowsTest, ThereIsOneScreen) {
    int width = 0;
    int height = 0;
    XPLMGetScreenSize(&width, &height);
    EXPECT_EQ(width, 1920);
    EXPECT_EQ(height, 1080);
    int monitors = 0;
    XPLMGetAllMonitorBoundsGlobal(
        [](int index, int left, int top, int right, int bottom, void* count) {
            EXPECT_EQ(index, 0);
            EXPECT_EQ(left, 0);
            EXPECT_EQ(top, 1080);
            EXPECT_EQ(right, 1920);
            EXPECT_EQ(bottom, 0);
            ++*static_cast<int*>(count);
        },
        &monitors);
    EXPECT_EQ(monitors, 1);
}
