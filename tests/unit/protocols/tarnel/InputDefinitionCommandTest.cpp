#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "InputDefinitionTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Commands that run once.

const std::string kOnce = "XPLMCommandOnce(sim/command)";

InputRecord command() {
    return {.targetType = 6, .target = "sim/command"};
}

TEST_F(InputDefinitionTest, RunsACommandWhenTheValueIsExactlyOne) {
    define(command());
    for (const std::int32_t value : {0, 2, -1, 65535, 257, -2147483647}) {
        execute(value);
        EXPECT_THAT(effects(), IsEmpty()) << value;
    }
    execute(1);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
}

TEST_F(InputDefinitionTest, RunsAnUnthrottledCommandForEveryPress) {
    define(command());
    execute(1, 5);
    execute(1, 5);
    execute(1, 0);
    EXPECT_THAT(effects(), ElementsAre(kOnce, kOnce, kOnce));
}

TEST_F(InputDefinitionTest, RunsACommandForAFixedValueOfOneWhateverIsReceived) {
    InputRecord record = command();
    record.fixedInt = 1;
    record.useFixed = 1;
    define(record);
    execute(0);
    execute(65535);
    EXPECT_THAT(effects(), ElementsAre(kOnce, kOnce));
}

TEST_F(InputDefinitionTest, NeverRunsACommandForAnotherFixedValue) {
    InputRecord record = command();
    record.fixedInt = 2;
    record.useFixed = 1;
    define(record);
    execute(1);
    EXPECT_THAT(effects(), IsEmpty());
}

class InputDefinitionDoubleRunTest
    : public InputDefinitionTest,
      public testing::WithParamInterface<std::pair<std::int32_t, std::size_t>> {};

TEST_P(InputDefinitionDoubleRunTest, RunsTheCommandThisOftenPerPress) {
    const auto [action, runs] = GetParam();
    InputRecord record = command();
    record.action = action;
    define(record);
    execute(1);
    EXPECT_EQ(effects(), std::vector<std::string>(runs, kOnce));
    execute(0);
    EXPECT_THAT(effects(), IsEmpty());
    execute(1);
    EXPECT_EQ(effects(), std::vector<std::string>(runs, kOnce));
}

INSTANTIATE_TEST_SUITE_P(Actions, InputDefinitionDoubleRunTest,
                         testing::Values(std::pair(0, 1U), std::pair(1001, 1U), std::pair(1002, 2U),
                                         std::pair(1003, 2U), std::pair(1004, 2U),
                                         std::pair(1005, 2U), std::pair(1006, 1U)),
                         [](const auto& row) {
                             return "Action" + std::to_string(row.param.first);
                         });

TEST_F(InputDefinitionTest, RunsAThrottledCommandOfActions1002To1005Once) {
    for (const int action : {1002, 1003, 1004, 1005}) {
        SCOPED_TRACE(action);
        InputRecord record = command();
        record.action = action;
        record.repeatInterval = 1;
        define(record);
        execute(1);
        EXPECT_THAT(effects(), ElementsAre(kOnce));
    }
}

TEST_F(InputDefinitionTest, BeginsAHeldCommandOfActions1002To1005Once) {
    InputRecord record = command();
    record.action = 1003;
    record.hold = 1;
    define(record);
    execute(1);
    EXPECT_THAT(effects(), ElementsAre("XPLMCommandBegin(sim/command)"));
}

// Throttled commands.

TEST_F(InputDefinitionTest, RunsAThrottledCommandForTheFirstTimeWhenTheTimeExceedsTheInterval) {
    InputRecord record = command();
    record.repeatInterval = 200;
    define(record);
    execute(1, 0);
    execute(1, 199);
    execute(1, 200);
    EXPECT_THAT(effects(), IsEmpty());
    execute(1, 201);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
}

TEST_F(InputDefinitionTest, RunsAThrottledCommandAtMostOncePerInterval) {
    InputRecord record = command();
    record.repeatInterval = 200;
    define(record);
    for (unsigned long nowMs = 1'000; nowMs <= 1'200; ++nowMs) {
        execute(1, nowMs);
    }
    EXPECT_THAT(effects(), ElementsAre(kOnce));
    execute(1, 1'201);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
    execute(1, 1'401);
    EXPECT_THAT(effects(), IsEmpty());
    execute(1, 1'402);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
}

TEST_F(InputDefinitionTest, DoesNotCountAReleaseAsARunOfAThrottledCommand) {
    InputRecord record = command();
    record.repeatInterval = 200;
    define(record);
    execute(0, 1'000);
    execute(1, 1'001);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
    execute(0, 1'100);
    execute(1, 1'150);
    EXPECT_THAT(effects(), IsEmpty()) << "a release does not make it ready again either";
}

TEST_F(InputDefinitionTest, ThrottlesFromAnIntervalOfOneMillisecondOn) {
    InputRecord record = command();
    record.repeatInterval = 1;
    define(record);
    execute(1, 1'000);
    execute(1, 1'000);
    execute(1, 1'001);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
    execute(1, 1'002);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
}

TEST_F(InputDefinitionTest, DoesNotThrottleForANegativeInterval) {
    InputRecord record = command();
    record.repeatInterval = -200;
    define(record);
    execute(1, 0);
    execute(1, 0);
    EXPECT_THAT(effects(), ElementsAre(kOnce, kOnce));
}

// The difference is unsigned: it is huge then.
TEST_F(InputDefinitionTest, RunsAThrottledCommandAgainWhenTheClockWasSetBack) {
    InputRecord record = command();
    record.repeatInterval = 200;
    define(record);
    execute(1, 1'000'000);
    execute(1, 999'999);
    EXPECT_THAT(effects(), ElementsAre(kOnce, kOnce));
}

TEST_F(InputDefinitionTest, ThrottlesWithTimesBeyond32Bits) {
    InputRecord record = command();
    record.repeatInterval = 200;
    define(record);
    constexpr unsigned long kNow = 1'700'000'000'000;
    execute(1, kNow);
    execute(1, kNow + 200);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
    execute(1, kNow + 201);
    EXPECT_THAT(effects(), ElementsAre(kOnce));
}

// Held commands.

InputRecord heldCommand() {
    return {.targetType = 6, .hold = 1, .target = "sim/command"};
}

const std::string kBegin = "XPLMCommandBegin(sim/command)";
const std::string kEnd = "XPLMCommandEnd(sim/command)";

TEST_F(InputDefinitionTest, BeginsAndEndsAHeldCommandOnceFor1100) {
    define(heldCommand());
    execute(1);
    EXPECT_THAT(effects(), ElementsAre(kBegin));
    execute(1);
    EXPECT_THAT(effects(), IsEmpty());
    execute(0);
    EXPECT_THAT(effects(), ElementsAre(kEnd));
    execute(0);
    EXPECT_THAT(effects(), IsEmpty());
}

TEST_F(InputDefinitionTest, HoldsACommandAnewAfterItHasEnded) {
    define(heldCommand());
    for (const std::int32_t value : {1, 0, 1, 0}) {
        execute(value);
    }
    EXPECT_THAT(effects(), ElementsAre(kBegin, kEnd, kBegin, kEnd));
}

TEST_F(InputDefinitionTest, EndsAHeldCommandForAnyValueButOne) {
    for (const std::int32_t value : {0, 2, -1, 65535}) {
        SCOPED_TRACE(value);
        define(heldCommand());
        execute(1);
        execute(value);
        EXPECT_THAT(effects(), ElementsAre(kBegin, kEnd));
    }
}

TEST_F(InputDefinitionTest, DoesNotEndACommandThatWasNotHeld) {
    define(heldCommand());
    execute(0);
    EXPECT_THAT(effects(), IsEmpty());
}

TEST_F(InputDefinitionTest, DoesNotThrottleAHeldCommand) {
    InputRecord record = heldCommand();
    record.repeatInterval = 200;
    define(record);
    for (const std::int32_t value : {1, 0, 1, 0}) {
        execute(value, 100);
    }
    EXPECT_THAT(effects(), ElementsAre(kBegin, kEnd, kBegin, kEnd));
}

TEST_F(InputDefinitionTest, HoldsACommandForAnyFlagButZero) {
    InputRecord record = heldCommand();
    record.hold = -5;
    define(record);
    execute(1);
    EXPECT_THAT(effects(), ElementsAre(kBegin));
}

TEST_F(InputDefinitionTest, HoldsACommandByItsFixedValue) {
    InputRecord record = heldCommand();
    record.fixedInt = 1;
    record.useFixed = 1;
    define(record);
    execute(0);
    execute(0);
    EXPECT_THAT(effects(), ElementsAre(kBegin));
}

TEST_F(InputDefinitionTest, StartsInTheHeldStateThatTheClientSent) {
    InputRecord record = heldCommand();
    record.held = 1;
    define(record);
    execute(1);
    EXPECT_THAT(effects(), IsEmpty());
    execute(0);
    EXPECT_THAT(effects(), ElementsAre(kEnd));
    execute(1);
    EXPECT_THAT(effects(), ElementsAre(kBegin));
}

TEST_F(InputDefinitionTest, DoesNothingInAHeldStateThatIsNeitherZeroNorOne) {
    InputRecord record = heldCommand();
    record.held = 2;
    define(record);
    execute(1);
    execute(0);
    EXPECT_THAT(effects(), IsEmpty());
}

TEST_F(InputDefinitionTest, LeavesAHeldCommandAsItIsWhileItsConditionSkips) {
    InputRecord record = heldCommand();
    record.condition = 2;
    define(record);
    execute(1);
    execute(0);
    EXPECT_THAT(effects(), ElementsAre(kBegin));
    execute(2);
    EXPECT_THAT(effects(), ElementsAre(kEnd));
}

} // namespace
