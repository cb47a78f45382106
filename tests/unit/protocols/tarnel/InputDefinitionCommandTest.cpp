#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputDefinitionTest.h"

namespace {

using testing::IsEmpty;

using Effects = std::vector<std::string>;

const Effects kNothing{};
const Effects kOnce{"XPLMCommandOnce(sim/command)"};
const Effects kTwice{kOnce[0], kOnce[0]};
const Effects kBegin{"XPLMCommandBegin(sim/command)"};
const Effects kEnd{"XPLMCommandEnd(sim/command)"};

// A value that a client sends, and what it does to the simulator.
struct Step {
    std::int32_t value;
    Effects effects;
    unsigned long nowMs = 1'000'000;
};

struct CommandRow {
    std::string name;
    InputRecord record;
    std::vector<Step> steps;
};

void PrintTo(const CommandRow& row, std::ostream* out) {
    *out << row.name;
}

class InputDefinitionCommandTest : public InputDefinitionTest,
                                   public testing::WithParamInterface<CommandRow> {};

TEST_P(InputDefinitionCommandTest, DoesStepByStep) {
    const CommandRow& row = GetParam();
    define(row.record);
    for (std::size_t i = 0; i < row.steps.size(); ++i) {
        SCOPED_TRACE(testing::Message() << "step " << i);
        execute(row.steps[i].value, row.steps[i].nowMs);
        EXPECT_EQ(effects(), row.steps[i].effects);
    }
}

std::string nameOf(const testing::TestParamInfo<CommandRow>& row) {
    return row.param.name;
}

// A record for the command; a field that a row does not set is zero.
InputRecord command(InputRecord record = {}) {
    record.targetType = 6;
    record.target = "sim/command";
    return record;
}

const InputRecord kPlain = command();

INSTANTIATE_TEST_SUITE_P(
    Run, InputDefinitionCommandTest,
    testing::ValuesIn(std::vector<CommandRow>{
        {"WhenTheValueIsExactlyOne",
         kPlain,
         {{0, kNothing},
          {2, kNothing},
          {-1, kNothing},
          {65535, kNothing},
          {257, kNothing},
          {-2147483647, kNothing},
          {1, kOnce}}},
        {"ForEveryPressUnthrottled", kPlain, {{1, kOnce, 5}, {1, kOnce, 5}, {1, kOnce, 0}}},
        {"ForAFixedValueOfOneWhateverIsReceived",
         command({.fixedInt = 1, .useFixed = 1}),
         {{0, kOnce}, {65535, kOnce}}},
        {"NeverForAnotherFixedValue", command({.fixedInt = 2, .useFixed = 1}), {{1, kNothing}}},
    }),
    nameOf);

CommandRow pressed(std::int32_t action, const Effects& effects) {
    return {"Action" + std::to_string(action),
            command({.action = action}),
            {{1, effects}, {0, kNothing}, {1, effects}}};
}

INSTANTIATE_TEST_SUITE_P(RunTwice, InputDefinitionCommandTest,
                         testing::Values(pressed(0, kOnce), pressed(1001, kOnce),
                                         pressed(1002, kTwice), pressed(1003, kTwice),
                                         pressed(1004, kTwice), pressed(1005, kTwice),
                                         pressed(1006, kOnce)),
                         nameOf);

CommandRow throttledPress(std::int32_t action) {
    return {"Action" + std::to_string(action),
            command({.action = action, .repeatInterval = 1}),
            {{1, kOnce}}};
}

INSTANTIATE_TEST_SUITE_P(RunOnceWhenThrottled, InputDefinitionCommandTest,
                         testing::Values(throttledPress(1002), throttledPress(1003),
                                         throttledPress(1004), throttledPress(1005)),
                         nameOf);

const InputRecord kThrottled = command({.repeatInterval = 200});
constexpr unsigned long kBeyond32Bits = 1'700'000'000'000;

INSTANTIATE_TEST_SUITE_P(
    Throttled, InputDefinitionCommandTest,
    testing::ValuesIn(std::vector<CommandRow>{
        {"RunsForTheFirstTimeWhenTheTimeExceedsTheInterval",
         kThrottled,
         {{1, kNothing, 0}, {1, kNothing, 199}, {1, kNothing, 200}, {1, kOnce, 201}}},
        {"DoesNotCountAReleaseAsARun",
         kThrottled,
         // The second release does not make it ready again either.
         {{0, kNothing, 1'000}, {1, kOnce, 1'001}, {0, kNothing, 1'100}, {1, kNothing, 1'150}}},
        {"BeginsAtAnIntervalOfOneMillisecond",
         command({.repeatInterval = 1}),
         {{1, kOnce, 1'000}, {1, kNothing, 1'000}, {1, kNothing, 1'001}, {1, kOnce, 1'002}}},
        {"IsNotForANegativeInterval",
         command({.repeatInterval = -200}),
         {{1, kOnce, 0}, {1, kOnce, 0}}},
        // The difference is unsigned: it is huge then.
        {"RunsAgainWhenTheClockWasSetBack",
         kThrottled,
         {{1, kOnce, 1'000'000}, {1, kOnce, 999'999}}},
        {"CountsWithTimesBeyond32Bits",
         kThrottled,
         {{1, kOnce, kBeyond32Bits},
          {1, kNothing, kBeyond32Bits + 200},
          {1, kOnce, kBeyond32Bits + 201}}},
    }),
    nameOf);

TEST_F(InputDefinitionTest, RunsAThrottledCommandAtMostOncePerInterval) {
    define(kThrottled);
    for (unsigned long nowMs = 1'000; nowMs <= 1'200; ++nowMs) {
        execute(1, nowMs);
    }
    EXPECT_EQ(effects(), kOnce);
    execute(1, 1'201);
    EXPECT_EQ(effects(), kOnce);
    execute(1, 1'401);
    EXPECT_THAT(effects(), IsEmpty());
    execute(1, 1'402);
    EXPECT_EQ(effects(), kOnce);
}

const InputRecord kHeld = command({.hold = 1});

INSTANTIATE_TEST_SUITE_P(
    Held, InputDefinitionCommandTest,
    testing::ValuesIn(std::vector<CommandRow>{
        {"BeginsAndEndsOnceFor1100", kHeld, {{1, kBegin}, {1, kNothing}, {0, kEnd}, {0, kNothing}}},
        {"BeginsAgainAfterItHasEnded", kHeld, {{1, kBegin}, {0, kEnd}, {1, kBegin}, {0, kEnd}}},
        {"EndsForTwo", kHeld, {{1, kBegin}, {2, kEnd}}},
        {"EndsForMinusOne", kHeld, {{1, kBegin}, {-1, kEnd}}},
        {"EndsForFullScale", kHeld, {{1, kBegin}, {65535, kEnd}}},
        {"DoesNotEndWhenItWasNotHeld", kHeld, {{0, kNothing}}},
        {"IsNotThrottled",
         command({.repeatInterval = 200, .hold = 1}),
         {{1, kBegin, 100}, {0, kEnd, 100}, {1, kBegin, 100}, {0, kEnd, 100}}},
        {"IsHeldForAnyFlagButZero", command({.hold = -5}), {{1, kBegin}}},
        {"IsHeldByItsFixedValue",
         command({.fixedInt = 1, .useFixed = 1, .hold = 1}),
         {{0, kBegin}, {0, kNothing}}},
        {"StartsInTheStateThatTheClientSent",
         command({.hold = 1, .held = 1}),
         {{1, kNothing}, {0, kEnd}, {1, kBegin}}},
        {"DoesNothingInAStateThatIsNeitherZeroNorOne",
         command({.hold = 1, .held = 2}),
         {{1, kNothing}, {0, kNothing}}},
        {"StaysAsItIsWhileItsConditionSkips",
         command({.condition = 2, .hold = 1}),
         {{1, kBegin}, {0, kNothing}, {2, kEnd}}},
        {"BeginsOnceForActionsThatRunTwice", command({.action = 1003, .hold = 1}), {{1, kBegin}}},
    }),
    nameOf);

} // namespace
