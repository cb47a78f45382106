#include <gtest/gtest.h>

#include "headless/xplm/CallRecorder.h"

using headless::CallRecorder;
using headless::Refusal;

TEST(CallRecorderTest, KeepsNoCallsUntilItIsEnabled) {
    CallRecorder recorder;
    recorder.Record("XPLMFindDataRef", nullptr, "sim/a");
    EXPECT_TRUE(recorder.Calls().empty());
    recorder.Enable();
    recorder.Record("XPLMFindDataRef", nullptr, "sim/b");
    recorder.Disable();
    recorder.Record("XPLMFindDataRef", nullptr, "sim/c");
    ASSERT_EQ(recorder.Calls().size(), 1U);
    EXPECT_EQ(recorder.Calls()[0].arguments, "sim/b");
}

TEST(CallRecorderTest, KeepsFunctionArgumentsAndHandleInOrder) {
    CallRecorder recorder;
    recorder.Enable();
    int target = 0;
    recorder.Record("XPLMSetDatai", &target, "sim/a", 7);
    recorder.Record("XPLMFindPluginsMenu", nullptr);
    ASSERT_EQ(recorder.Calls().size(), 2U);
    EXPECT_EQ(recorder.Calls()[0].function, "XPLMSetDatai");
    EXPECT_EQ(recorder.Calls()[0].arguments, "sim/a, 7");
    EXPECT_EQ(recorder.Calls()[0].handle, &target);
    EXPECT_EQ(recorder.Calls()[1].arguments, "");
}

TEST(CallRecorderTest, FindsTheCallsOfOneFunction) {
    CallRecorder recorder;
    recorder.Enable();
    recorder.Record("A", nullptr, 1);
    recorder.Record("B", nullptr, 2);
    recorder.Record("A", nullptr, 3);
    const auto calls = recorder.CallsOf("A");
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[1].arguments, "3");
}

TEST(CallRecorderTest, CountsEveryRefusalButKeepsOnlyTheLast) {
    CallRecorder recorder;
    for (int i = 0; i < 100; ++i) {
        recorder.Refuse(Refusal::NullHandle, "XPLMGetDatai", std::to_string(i).c_str());
    }
    EXPECT_EQ(recorder.NullHandleCalls(), 100U);
    ASSERT_EQ(recorder.RecentRefusals().size(), 64U);
    EXPECT_EQ(recorder.RecentRefusals().front().detail, "36");
    EXPECT_EQ(recorder.RecentRefusals().back().detail, "99");
}

TEST(CallRecorderTest, ClearForgetsCallsAndRefusals) {
    CallRecorder recorder;
    recorder.Enable();
    recorder.Record("A", nullptr);
    recorder.Refuse(Refusal::ReadOnly, "XPLMSetDatai", "sim/a");
    recorder.Clear();
    EXPECT_TRUE(recorder.Calls().empty());
    EXPECT_EQ(recorder.Refusals(Refusal::ReadOnly), 0U);
    EXPECT_TRUE(recorder.RecentRefusals().empty());
}
