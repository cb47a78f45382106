#include "InputDefinitionTest.h"

#include <array>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

// Look-ups.

InputRecord withAllNames() {
    return {.targetType = 2,
            .scaling = 3,
            .condition = 3,
            .rangeMinimumName = "sim/minimum",
            .rangeMaximumName = "sim/maximum",
            .target = "sim/float",
            .conditionName = "sim/condition_int"};
}

TEST_F(InputDefinitionTest, LooksUpTargetThenRangeThenCondition) {
    const InputDefinition made(toRecord(withAllNames()));
    EXPECT_THAT(lookUps(),
                ElementsAre("XPLMFindDataRef(sim/float)", "XPLMFindDataRef(sim/minimum)",
                            "XPLMFindDataRef(sim/maximum)", "XPLMFindDataRef(sim/condition_int)"));
}

TEST_F(InputDefinitionTest, LooksUpACommandForTargetTypeSix) {
    InputRecord record = withAllNames();
    record.targetType = 6;
    record.target = "sim/command";
    record.condition = 4;
    const InputDefinition made(toRecord(record));
    EXPECT_THAT(lookUps(),
                ElementsAre("XPLMFindCommand(sim/command)", "XPLMFindDataRef(sim/minimum)",
                            "XPLMFindDataRef(sim/maximum)", "XPLMFindDataRef(sim/condition_int)"));
}

TEST_F(InputDefinitionTest, LooksUpADatarefForEveryOtherTargetType) {
    for (const int type : {-1, 0, 1, 2, 3, 4, 5, 7}) {
        SCOPED_TRACE(type);
        simulator.Recorder().Clear();
        const InputDefinition made(toRecord({.targetType = type, .target = "sim/int"}));
        EXPECT_THAT(lookUps(), ElementsAre("XPLMFindDataRef(sim/int)"));
    }
}

TEST_F(InputDefinitionTest, LooksUpTheRangeForScalingModeThreeOnly) {
    for (const int scaling : {-1, 0, 1, 2, 4}) {
        SCOPED_TRACE(scaling);
        simulator.Recorder().Clear();
        InputRecord record = withAllNames();
        record.scaling = scaling;
        const InputDefinition made(toRecord(record));
        EXPECT_THAT(lookUps(), ElementsAre("XPLMFindDataRef(sim/float)",
                                           "XPLMFindDataRef(sim/condition_int)"));
    }
}

TEST_F(InputDefinitionTest, LooksUpTheConditionForConditionsThreeAndFourOnly) {
    for (const int condition : {-1, 0, 1, 2, 5}) {
        SCOPED_TRACE(condition);
        simulator.Recorder().Clear();
        InputRecord record = withAllNames();
        record.condition = condition;
        const InputDefinition made(toRecord(record));
        EXPECT_THAT(lookUps(),
                    ElementsAre("XPLMFindDataRef(sim/float)", "XPLMFindDataRef(sim/minimum)",
                                "XPLMFindDataRef(sim/maximum)"));
    }
}

TEST_F(InputDefinitionTest, PassesAnUnknownDatarefOnAsNull) {
    for (const int type : {1, 2, 3, 4}) {
        SCOPED_TRACE(type);
        define({.targetType = type, .target = "sim/unknown"});
        execute(1);
        EXPECT_EQ(simulator.Recorder().NullHandleCalls(), 1U);
    }
}

TEST_F(InputDefinitionTest, PassesAnUnknownCommandOnAsNull) {
    define({.targetType = 6, .target = "sim/unknown"});
    execute(1);
    EXPECT_EQ(simulator.Recorder().NullHandleCalls(), 1U);
    define({.targetType = 6, .hold = 1, .target = "sim/unknown"});
    execute(1);
    execute(0);
    EXPECT_EQ(simulator.Recorder().NullHandleCalls(), 2U);
}

TEST_F(InputDefinitionTest, DoesNotLookAgainForADatarefThatAppearsLater) {
    define({.targetType = 1, .target = "sim/later"});
    simulator.Datarefs().Define({.name = "sim/later", .types = xplmType_Int});
    execute(5);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/later"), 0);
}

// Int targets.

TEST_F(InputDefinitionTest, SetsAnIntToTheReceivedValueUnscaled) {
    define({.targetType = 1, .scaling = 2, .floatMaximum = 1.0F, .target = "sim/int"});
    for (const std::int32_t value : {65535, 0, -1, 2147483647}) {
        execute(value);
        EXPECT_EQ(simulator.Datarefs().GetInt("sim/int"), value);
    }
}

TEST_F(InputDefinitionTest, SetsAnIntToTheFixedIntValue) {
    define(
        {.fixedInt = 42, .targetType = 1, .fixedFloat = 9.0F, .useFixed = -1, .target = "sim/int"});
    execute(7);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/int"), 42);
}

TEST_F(InputDefinitionTest, SetsOneElementOfAnIntArray) {
    define({.targetIndex = 5, .targetType = 3, .target = "sim/ints"});
    execute(-12345);
    EXPECT_EQ(simulator.Datarefs().GetIntArray("sim/ints"),
              (std::vector<int>{0, 0, 0, 0, 0, -12345, 0, 0}));
}

// Not to the fixed int value, as an int target is.
TEST_F(InputDefinitionTest, SetsAnElementOfAnIntArrayToTheFixedValueFlagItself) {
    define(
        {.targetIndex = 1, .fixedInt = 42, .targetType = 3, .useFixed = 3, .target = "sim/ints"});
    execute(7);
    EXPECT_EQ(simulator.Datarefs().GetIntArray("sim/ints"),
              (std::vector<int>{0, 3, 0, 0, 0, 0, 0, 0}));
}

TEST_F(InputDefinitionTest, PassesATargetIndexOnAsItIs) {
    define({.targetIndex = -4, .targetType = 3, .target = "sim/ints"});
    execute(7);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatavi(sim/ints, -4, 1)"));
    define({.targetIndex = 99, .targetType = 4, .target = "sim/floats"});
    execute(7);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatavf(sim/floats, 99, 1)"));
}

TEST_F(InputDefinitionTest, ReadsAValueThatIsNotAligned) {
    define({.targetType = 1, .target = "sim/int"});
    alignas(4) std::array<unsigned char, 8> bytes{0xEE, 0x78, 0x56, 0x34, 0x12, 0xEE};
    definition->ExecuteAction(bytes.data() + 1, 1'000'000);
    EXPECT_EQ(simulator.Datarefs().GetInt("sim/int"), 0x12345678);
}

} // namespace
