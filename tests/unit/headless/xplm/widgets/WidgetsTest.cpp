#include <array>
#include <bit>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "XPStandardWidgets.h"
#include "XPUIGraphics.h"
#include "XPWidgetUtils.h"
#include "XPWidgets.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/display/Keyboard.h"
#include "headless/xplm/display/Windows.h"

using headless::Simulator;

namespace {

std::vector<int> messages;

int listen(XPWidgetMessage message, XPWidgetID /*widget*/, intptr_t /*first*/,
           intptr_t /*second*/) {
    messages.push_back(message);
    return 0;
}

// Destroys its child as soon as it has one.
int destroyChild(XPWidgetMessage message, XPWidgetID /*widget*/, intptr_t first,
                 intptr_t /*second*/) {
    if (message == xpMsg_AcceptChild) {
        XPDestroyWidget(std::bit_cast<XPWidgetID>(first), 1);
    }
    return 0;
}

// Goes with its last child.
int destroyWithoutChild(XPWidgetMessage message, XPWidgetID widget, intptr_t /*first*/,
                        intptr_t /*second*/) {
    if (message == xpMsg_LoseChild && XPCountChildWidgets(widget) == 0) {
        XPDestroyWidget(widget, 0);
    }
    return 0;
}

} // namespace

class WidgetsTest : public ::testing::Test {
protected:
    WidgetsTest()
        : root(
              XPCreateWidget(100, 400, 300, 200, 1, "Root", 1, nullptr, xpWidgetClass_MainWindow)) {
        messages.clear();
    }

    XPWidgetID add(XPWidgetClass widgetClass) const {
        return XPCreateWidget(120, 300, 200, 280, 1, "Child", 0, root, widgetClass);
    }

    void click(int x, int y) {
        sim.Windows().Click(x, y, xplm_MouseDown);
        sim.Windows().Click(x, y, xplm_MouseUp);
    }

    static std::string descriptorOf(XPWidgetID widget) {
        std::array<char, 100> text{};
        XPGetWidgetDescriptor(widget, text.data(), text.size());
        return text.data();
    }

    Simulator sim;
    XPWidgetID root;
};

TEST_F(WidgetsTest, AreATree) {
    const XPWidgetID child = add(xpWidgetClass_Caption);
    EXPECT_EQ(XPCountChildWidgets(root), 1);
    EXPECT_EQ(XPGetNthChildWidget(root, 0), child);
    EXPECT_EQ(XPGetNthChildWidget(root, 1), nullptr);
    EXPECT_EQ(XPGetParentWidget(child), root);
    EXPECT_EQ(XPFindRootWidget(child), root);
    EXPECT_NE(XPGetWidgetUnderlyingWindow(child), nullptr);
    EXPECT_EQ(XPIsWidgetInFront(child), 1);
    XPPlaceWidgetWithin(root, child);
    EXPECT_EQ(XPGetParentWidget(root), nullptr) << "not into what it contains";
    XPDestroyWidget(root, 1);
    EXPECT_EQ(XPCountChildWidgets(child), 0);
    EXPECT_EQ(sim.Windows().Count(), 0U);
}

TEST_F(WidgetsTest, KeepWhatTheyAreTold) {
    const XPWidgetID child = add(xpWidgetClass_Caption);
    XPSetWidgetDescriptor(child, "New text");
    EXPECT_EQ(XPGetWidgetDescriptor(child, nullptr, 0), 8);
    EXPECT_EQ(descriptorOf(child), "New text");
    int exists = 1;
    EXPECT_EQ(XPGetWidgetProperty(child, xpProperty_UserStart, &exists), 0);
    EXPECT_EQ(exists, 0);
    XPSetWidgetProperty(child, xpProperty_UserStart, 42);
    EXPECT_EQ(XPGetWidgetProperty(child, xpProperty_UserStart, &exists), 42);
    EXPECT_EQ(exists, 1);
    XPHideWidget(root);
    EXPECT_EQ(XPIsWidgetVisible(child), 0) << "its parent is hidden";
    XPShowWidget(root);
    EXPECT_EQ(XPIsWidgetVisible(child), 1);
}

TEST_F(WidgetsTest, AreFoundByPlaceAndCutOffByTheirParents) {
    const XPWidgetID child = XPCreateWidget(50, 300, 150, 250, 1, "", 0, root, 0);
    EXPECT_EQ(XPGetWidgetForLocation(root, 120, 270, 1, 1), child);
    EXPECT_EQ(XPGetWidgetForLocation(root, 250, 270, 1, 1), root);
    EXPECT_EQ(XPGetWidgetForLocation(root, 0, 0, 1, 1), nullptr);
    int left = 0;
    int right = 0;
    XPGetWidgetExposedGeometry(child, &left, nullptr, &right, nullptr);
    EXPECT_EQ(left, 100);
    EXPECT_EQ(right, 150);
}

TEST_F(WidgetsTest, TellTheirCallbacksInTheSdksOrder) {
    const XPWidgetID child =
        XPCreateCustomWidget(120, 300, 200, 280, 1, "Custom", 0, root, &listen);
    XPSetWidgetDescriptor(child, "x");
    XPSetWidgetGeometry(child, 121, 300, 201, 280);
    XPHideWidget(child);
    XPSetWidgetProperty(child, xpProperty_Enabled, 1);
    XPDestroyWidget(child, 1);
    EXPECT_EQ(messages, (std::vector<int>{xpMsg_Create, xpMsg_AcceptParent, xpMsg_DescriptorChanged,
                                          xpMsg_Reshape, xpMsg_Hidden, xpMsg_PropertyChanged,
                                          xpMsg_Destroy}));
}

TEST_F(WidgetsTest, AnUnhandledMessageGoesUpToTheParents) {
    XPAddWidgetCallback(root, &listen);
    const XPWidgetID child = add(xpWidgetClass_Caption);
    messages.clear();
    EXPECT_EQ(XPSendMessageToWidget(child, xpMsg_UserStart, xpMode_Direct, 0, 0), 0);
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(XPSendMessageToWidget(child, xpMsg_UserStart, xpMode_UpChain, 0, 0), 0);
    EXPECT_EQ(messages, (std::vector<int>{xpMsg_UserStart}));
    XPAddWidgetCallback(child, &listen);
    messages.clear();
    XPSendMessageToWidget(root, xpMsg_UserStart, xpMode_Recursive, 0, 0);
    EXPECT_EQ(messages, (std::vector<int>{xpMsg_UserStart, xpMsg_UserStart}));
}

TEST_F(WidgetsTest, AButtonIsPressed) {
    XPAddWidgetCallback(root, &listen);
    const XPWidgetID button = add(xpWidgetClass_Button);
    messages.clear();
    click(150, 290);
    EXPECT_EQ(messages, (std::vector<int>{xpMsg_PushButtonPressed}));
    XPSetWidgetProperty(button, xpProperty_ButtonBehavior, xpButtonBehaviorCheckBox);
    messages.clear();
    click(150, 290);
    EXPECT_EQ(messages, (std::vector<int>{xpMsg_ButtonStateChanged}));
    EXPECT_EQ(XPGetWidgetProperty(button, xpProperty_ButtonState, nullptr), 1);
    click(150, 290);
    EXPECT_EQ(XPGetWidgetProperty(button, xpProperty_ButtonState, nullptr), 0);
}

TEST_F(WidgetsTest, ATextFieldIsTypedInto) {
    const XPWidgetID field = add(xpWidgetClass_TextField);
    XPSetWidgetDescriptor(field, "");
    click(150, 290);
    EXPECT_EQ(XPGetWidgetWithFocus(), field);
    for (const char key : {'a', 'b', 'c'}) {
        sim.Keyboard().Press(key, xplm_DownFlag, key);
        sim.Keyboard().Press(key, xplm_UpFlag, key);
    }
    sim.Keyboard().Press('\b', xplm_DownFlag, XPLM_VK_BACK);
    EXPECT_EQ(descriptorOf(field), "ab");
    XPLoseKeyboardFocus(field);
    EXPECT_EQ(XPGetWidgetWithFocus(), nullptr);
    EXPECT_EQ(XPSetKeyboardFocus(root), nullptr) << "the root does not want the keyboard";
}

TEST_F(WidgetsTest, ManyAreMadeAtOnceAndMoved) {
    const std::array<XPWidgetCreate_t, 2> wanted{
        {{0, 20, 20, 0, 1, "Outer", 0, PARAM_PARENT, xpWidgetClass_SubWindow},
         {5, 15, 15, 5, 1, "Inner", 0, 0, xpWidgetClass_Caption}}};
    std::array<XPWidgetID, 2> made{};
    XPUCreateWidgets(wanted.data(), 2, root, made.data());
    EXPECT_EQ(XPGetParentWidget(made[0]), root);
    EXPECT_EQ(XPGetParentWidget(made[1]), made[0]);
    XPAddWidgetCallback(made[0], &XPUFixedLayout);
    XPUMoveWidgetBy(made[0], 10, 20);
    int left = 0;
    int bottom = 0;
    XPGetWidgetGeometry(made[1], &left, nullptr, nullptr, &bottom);
    EXPECT_EQ(left, 15);
    EXPECT_EQ(bottom, 25);
}

TEST_F(WidgetsTest, AreDraggedByTheirTitle) {
    XPAddWidgetCallback(
        root, [](XPWidgetMessage message, XPWidgetID widget, intptr_t first, intptr_t second) {
            return XPUDragWidget(message, widget, first, second, 100, 400, 300, 380);
        });
    sim.Windows().Click(150, 390, xplm_MouseDown);
    sim.Windows().Click(160, 395, xplm_MouseDrag);
    sim.Windows().Click(160, 395, xplm_MouseUp);
    int left = 0;
    int top = 0;
    XPGetWidgetGeometry(root, &left, &top, nullptr, nullptr);
    EXPECT_EQ(left, 110);
    EXPECT_EQ(top, 405);
}

TEST_F(WidgetsTest, ElementsAndTracksHaveSizes) {
    int width = 0;
    int height = 0;
    int lit = 0;
    XPGetElementDefaultDimensions(0, &width, &height, &lit);
    EXPECT_GT(width, 0);
    EXPECT_GT(height, 0);
    int vertical = 0;
    int down = 0;
    int below = 0;
    int thumb = 0;
    int above = 0;
    int up = 0;
    XPGetTrackMetrics(0, 0, 16, 148, 0, 10, 5, xpTrack_ScrollBar, &vertical, &down, &below, &thumb,
                      &above, &up);
    EXPECT_EQ(vertical, 1);
    EXPECT_EQ(down + below + thumb + above + up, 148);
    EXPECT_EQ(below, above) << "the value is in the middle";
    EXPECT_NE(XPGetWidgetClassFunc(xpWidgetClass_Button), nullptr);
    EXPECT_EQ(XPGetWidgetClassFunc(99), nullptr);
}

TEST_F(WidgetsTest, MayLoseTheirWindow) {
    XPLMDestroyWindow(XPGetWidgetUnderlyingWindow(root));
    XPHideWidget(root);
    XPSetWidgetGeometry(root, 0, 10, 10, 0);
    EXPECT_EQ(XPIsWidgetVisible(root), 0);
}

TEST_F(WidgetsTest, MayDestroyAChildThatTheyAccept) {
    XPAddWidgetCallback(root, &destroyChild);
    add(xpWidgetClass_Caption);
    EXPECT_EQ(XPCountChildWidgets(root), 0);
}

TEST_F(WidgetsTest, MayDestroyThemselvesWhenTheirLastChildIsGone) {
    const XPWidgetID box = add(xpWidgetClass_SubWindow);
    XPAddWidgetCallback(box, &destroyWithoutChild);
    XPCreateWidget(0, 1, 1, 0, 1, "", 0, box, xpWidgetClass_Caption);
    XPDestroyWidget(box, 1);
    EXPECT_EQ(XPCountChildWidgets(root), 0);
    EXPECT_EQ(sim.Recorder().Refusals(headless::Refusal::UnknownHandle), 0U);
}
