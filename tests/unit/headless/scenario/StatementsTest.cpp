#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "XPLMMenus.h"
#include "scenario/FlightTest.h"

using ::testing::EndsWith;

using StatementsTest = FlightTest;

TEST_F(StatementsTest, ComparesNumbers) {
    say("set sim/cockpit2/controls/flap_ratio 0.1");
    for (const char* condition : {"== 0.1", "== 0.10", "!= 0.2", "< 0.2", "<= 0.1", "> 0", ">= 0.1",
                                  "== 0.2 within 0.11", "!= 0.2 within 0.05"}) {
        EXPECT_EQ(say(std::string("expect sim/cockpit2/controls/flap_ratio ") + condition), "ok")
            << condition;
    }
    EXPECT_EQ(failureOf("expect sim/cockpit2/controls/flap_ratio == 0.2 within 0.05"),
              "expected sim/cockpit2/controls/flap_ratio == 0.2 within 0.05, got 0.1");
    EXPECT_EQ(failureOf("expect sim/cockpit2/controls/flap_ratio > 0.1"),
              "expected sim/cockpit2/controls/flap_ratio > 0.1, got 0.1");
}

TEST_F(StatementsTest, AWholeNumberIsNotEqualToItsNeighbour) {
    say("set sim/cockpit/autopilot/autopilot_state 16777217");
    EXPECT_EQ(failureOf("expect sim/cockpit/autopilot/autopilot_state == 16777216"),
              "expected sim/cockpit/autopilot/autopilot_state == 16777216, got 16777217");
}

TEST_F(StatementsTest, ComparesArraysAndTheirElements) {
    say("set sim/flightmodel/position/q 1,0.5");
    EXPECT_EQ(say("expect sim/flightmodel/position/q == 1,0.5,0,0"), "ok");
    EXPECT_EQ(say("expect sim/flightmodel/position/q[1] > 0.4"), "ok");
    EXPECT_EQ(say("set sim/flightmodel/position/q[2:4] 3,4"), "ok");
    EXPECT_EQ(say("get sim/flightmodel/position/q"), "sim/flightmodel/position/q = 1,0.5,3,4");
    EXPECT_EQ(say("get sim/flightmodel/position/q[1:3]"),
              "sim/flightmodel/position/q[1:3] = 0.5,3");
    EXPECT_EQ(failureOf("expect sim/flightmodel/position/q == 1,0.5"),
              "expected sim/flightmodel/position/q == 1,0.5, got 1,0.5,3,4");
    EXPECT_EQ(errorOf("expect sim/flightmodel/position/q > 1"),
              "arrays are compared by == and != only; an element is "
              "sim/flightmodel/position/q[0]");
    EXPECT_EQ(errorOf("get sim/flightmodel/position/q[4]"),
              "sim/flightmodel/position/q[4]: the array has 4 elements");
    EXPECT_EQ(errorOf("get sim/time/paused[0]"), "sim/time/paused[0]: the dataref is not an array");
    EXPECT_EQ(errorOf("get sim/flightmodel/position/q[2147483647]"),
              "sim/flightmodel/position/q[2147483647]: the array has 4 elements");
    EXPECT_EQ(errorOf("get sim/flightmodel/position/q[x]"),
              "sim/flightmodel/position/q[x]: elements are [3] for one, [2:5] for 2, 3 and 4");
}

TEST_F(StatementsTest, ComparesText) {
    EXPECT_EQ(say("set sim/aircraft/view/acf_tailnum \"OE ABC\""), "ok");
    EXPECT_EQ(say("expect sim/aircraft/view/acf_tailnum == OE ABC"), "ok");
    EXPECT_EQ(say("expect sim/aircraft/view/acf_tailnum == \"OE ABC\" for 1s"), "ok");
    EXPECT_EQ(say("expect sim/aircraft/view/acf_tailnum != OE"), "ok");
    EXPECT_EQ(failureOf("expect sim/aircraft/view/acf_tailnum == N1"),
              "expected sim/aircraft/view/acf_tailnum == N1, got OE ABC");
    EXPECT_EQ(errorOf("expect sim/aircraft/view/acf_tailnum < N1"),
              "sim/aircraft/view/acf_tailnum is text, which is compared by == and != only");
    EXPECT_EQ(say("set sim/aircraft/view/acf_tailnum"), "ok");
    EXPECT_EQ(say("expect sim/aircraft/view/acf_tailnum == \"\""), "ok");
}

TEST_F(StatementsTest, NamesMayHaveBlanksInThem) {
    session.Simulator().Datarefs().Define({"odd/name of\ta dataref", xplmType_Int});
    EXPECT_EQ(say("get odd/name of\ta dataref"), "odd/name of\ta dataref = 0");
    session.Simulator().Commands().Define("odd/name of a command", "");
    EXPECT_EQ(say("press odd/name of a command"), "ok");
}

TEST_F(StatementsTest, ADatarefThatDoesNotExistMeetsNoExpectation) {
    EXPECT_EQ(failureOf("expect sim/none == 1"),
              "expected sim/none == 1, got no such dataref: sim/none");
    EXPECT_EQ(errorOf("set sim/none 1"), "no such dataref: sim/none");
}

TEST_F(StatementsTest, ExpectsInEveryFrameOfATime) {
    EXPECT_EQ(say("expect fake/counter < 100 for 2s"), "ok");
    EXPECT_EQ(frames(), 20);
    EXPECT_EQ(failureOf("expect fake/counter < 25 for 2s"),
              "expected fake/counter < 25 for 2 s, got 25 after 0.5 s");
    EXPECT_EQ(frames(), 25);
}

TEST_F(StatementsTest, WaitsATimeOrUntilItIsSo) {
    EXPECT_EQ(say("wait 2s"), "ok");
    EXPECT_EQ(frames(), 20);
    EXPECT_EQ(say("wait up to 10s until fake/counter == 23"), "ok");
    EXPECT_EQ(frames(), 23);
    EXPECT_EQ(say("wait up to 0s until fake/counter == 23"), "ok");
    EXPECT_EQ(failureOf("wait up to 1s until fake/counter == 0"),
              "expected fake/counter == 0 after at most 1 s, got 33");
    EXPECT_EQ(frames(), 33);
}

TEST_F(StatementsTest, RunsFramesAtAnyRate) {
    EXPECT_EQ(say("frames 3"), "frame 3");
    EXPECT_EQ(say("rate 50"), "ok");
    EXPECT_EQ(say("wait 1s"), "ok");
    EXPECT_EQ(say("frames"), "frames 53");
    EXPECT_DOUBLE_EQ(session.FlownSeconds(), 1.3);
}

TEST_F(StatementsTest, AnInterruptEndsWaiting) {
    interrupted = true;
    EXPECT_EQ(say("wait 1000s"), "ok");
    EXPECT_EQ(frames(), 0);
    EXPECT_TRUE(flight.HasEnded());
}

TEST_F(StatementsTest, PressesBeginsAndEndsCommands) {
    const std::string name = "sim/flight_controls/flaps_down";
    say("press " + name);
    say("begin " + name);
    say("frames 2");
    say("end " + name);
    EXPECT_EQ(say("events " + name),
              name + " begin=2 continue=2 end=2 pressed-begin=2 pressed-continue=2 pressed-end=2");
    say("command once " + name);
    say("command begin " + name);
    say("command end " + name);
    EXPECT_EQ(say("events " + name),
              name + " begin=4 continue=2 end=4 pressed-begin=4 pressed-continue=2 pressed-end=4");
    EXPECT_EQ(errorOf("press sim/none"), "no such command: sim/none");
}

TEST_F(StatementsTest, ClicksMenuItems) {
    static int clicks = 0;
    clicks = 0;
    const int item = XPLMAppendMenuItem(XPLMFindPluginsMenu(), "My menu", nullptr, 0);
    const XPLMMenuID menu = XPLMCreateMenu(
        "Mine", XPLMFindPluginsMenu(), item, [](void*, void*) { ++clicks; }, nullptr);
    XPLMAppendMenuItem(menu, "Do it", nullptr, 0);
    EXPECT_EQ(say("click My menu > Do it"), "ok");
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(errorOf("click My menu > Undo it"), "no such menu item: My menu > Undo it");
}

TEST_F(StatementsTest, LooksIntoTheLog) {
    EXPECT_EQ(say("log expect message 102 0"), "ok");
    EXPECT_EQ(say("log expect \"start\""), "ok");
    EXPECT_EQ(failureOf("log expect disable"),
              "expected a line of the log with \"disable\", got none; the last is "
              "\"message 104 0 from 0\"");
    EXPECT_EQ(say("disable"), "ok");
    EXPECT_EQ(say("log expect disable"), "ok");
}

TEST_F(StatementsTest, NamesThePlugin) {
    EXPECT_EQ(say("disable Fake"), "ok");
    EXPECT_EQ(say("enable headless.tests.fake"), "ok");
    EXPECT_EQ(say("reload \"Fake\""), "ok");
    EXPECT_EQ(errorOf("reload Other"), "no plugin is called \"Other\"");
    EXPECT_EQ(errorOf("disable Other"), "no plugin is called \"Other\"");
}
