#include <array>
#include <cstddef>
#include <limits>
#include <string>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputDefinitionTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Conditions on the value.

TEST_F(InputDefinitionTest, WritesNothingUnderConditionOneWithValueOne) {
    define({.targetType = 1, .condition = 1, .target = "sim/int"});
    execute(1);
    EXPECT_THAT(effects(), IsEmpty());
    execute(0);
    execute(2);
    execute(-1);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatai(sim/int, 0)", "XPLMSetDatai(sim/int, 2)",
                                       "XPLMSetDatai(sim/int, -1)"));
}

TEST_F(InputDefinitionTest, WritesNothingUnderConditionTwoWithValueZero) {
    define({.targetType = 1, .condition = 2, .target = "sim/int"});
    execute(0);
    EXPECT_THAT(effects(), IsEmpty());
    execute(1);
    execute(2);
    execute(-1);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatai(sim/int, 1)", "XPLMSetDatai(sim/int, 2)",
                                       "XPLMSetDatai(sim/int, -1)"));
}

TEST_F(InputDefinitionTest, AsksTheReceivedValueAndNotTheFixedOneForItsCondition) {
    define({.fixedInt = 1, .targetType = 1, .condition = 1, .useFixed = 1, .target = "sim/int"});
    execute(0);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatai(sim/int, 1)"));
    execute(1);
    EXPECT_THAT(effects(), IsEmpty());
}

// Conditions on a dataref of each type in turn, with this value.

struct ConditionValue {
    std::string name;
    float value;
    bool skippedWhenPositive;
    bool skippedWhenZero;
};

class InputDefinitionConditionTest
    : public InputDefinitionTest,
      public testing::WithParamInterface<std::tuple<int, ConditionValue>> {
protected:
    void setConditionDatarefs(float value) {
        const int whole = static_cast<int>(value);
        simulator.Datarefs().SetInt("sim/condition_int", whole);
        simulator.Datarefs().SetFloat("sim/condition_float", value);
        // The elements beside it say the opposite.
        const int otherWhole = whole == 0 ? 9 : 0;
        const float other = value == 0.0F ? 9.0F : 0.0F;
        simulator.Datarefs().SetIntArray("sim/condition_ints",
                                         {otherWhole, otherWhole, whole, otherWhole});
        simulator.Datarefs().SetFloatArray("sim/condition_floats", {other, other, value, other});
    }

    bool appliesUnder(int condition) {
        static constexpr std::array kNames{"", "sim/condition_int", "sim/condition_float",
                                           "sim/condition_ints", "sim/condition_floats"};
        const auto& [type, value] = GetParam();
        setConditionDatarefs(value.value);
        define({.targetType = 1,
                .condition = condition,
                .target = "sim/int",
                .conditionName = kNames.at(static_cast<std::size_t>(type)),
                .conditionType = type,
                .conditionIndex = 2});
        execute(7);
        return simulator.Datarefs().GetInt("sim/int") == 7;
    }
};

TEST_P(InputDefinitionConditionTest, SkipsUnderConditionThreeWhenTheDatarefIsGreaterThanZero) {
    EXPECT_EQ(appliesUnder(3), !std::get<1>(GetParam()).skippedWhenPositive);
}

TEST_P(InputDefinitionConditionTest, SkipsUnderConditionFourWhenTheDatarefIsZero) {
    EXPECT_EQ(appliesUnder(4), !std::get<1>(GetParam()).skippedWhenZero);
}

std::string conditionName(const testing::TestParamInfo<std::tuple<int, ConditionValue>>& row) {
    return "Type" + std::to_string(std::get<0>(row.param)) + std::get<1>(row.param).name;
}

INSTANTIATE_TEST_SUITE_P(AllTypes, InputDefinitionConditionTest,
                         testing::Combine(testing::Values(1, 2, 3, 4),
                                          testing::Values(ConditionValue{"Zero", 0.0F, false, true},
                                                          ConditionValue{"One", 1.0F, true, false},
                                                          ConditionValue{"Two", 2.0F, true, false},
                                                          ConditionValue{"MinusOne", -1.0F, false,
                                                                         false})),
                         conditionName);

INSTANTIATE_TEST_SUITE_P(
    FloatTypes, InputDefinitionConditionTest,
    testing::Combine(testing::Values(2, 4),
                     testing::Values(ConditionValue{"MinusZero", -0.0F, false, true},
                                     ConditionValue{"AFraction", 0.25F, true, false},
                                     ConditionValue{"ANegativeFraction", -0.25F, false, false},
                                     ConditionValue{"TheSmallestNumber",
                                                    std::numeric_limits<float>::denorm_min(), true,
                                                    false})),
    conditionName);

TEST_F(InputDefinitionTest, MakesNoTestForAnyOtherConditionType) {
    simulator.Datarefs().SetInt("sim/condition_int", 1);
    for (const int condition : {3, 4}) {
        for (const int type : {-1, 0, 5, 6}) {
            SCOPED_TRACE(testing::Message() << condition << ", " << type);
            define({.targetType = 1,
                    .condition = condition,
                    .target = "sim/int",
                    .conditionName = "sim/condition_int",
                    .conditionType = type});
            execute(7);
            EXPECT_THAT(effects(), ElementsAre("XPLMSetDatai(sim/int, 7)"));
            simulator.Datarefs().SetInt("sim/condition_int", 0);
        }
    }
}

TEST_F(InputDefinitionTest, ReadsAnUnknownConditionDatarefAsZero) {
    for (const int type : {1, 2, 3, 4}) {
        SCOPED_TRACE(type);
        InputRecord record{.targetType = 1,
                           .condition = 3,
                           .target = "sim/int",
                           .conditionName = "sim/unknown",
                           .conditionType = type};
        define(record);
        execute(7);
        EXPECT_THAT(effects(), ElementsAre("XPLMSetDatai(sim/int, 7)"));
        record.condition = 4;
        define(record);
        execute(7);
        EXPECT_THAT(effects(), IsEmpty());
    }
}

TEST_F(InputDefinitionTest, ReadsTheConditionDatarefAnewForEveryValue) {
    define({.targetType = 1,
            .condition = 4,
            .target = "sim/int",
            .conditionName = "sim/condition_int",
            .conditionType = 1});
    execute(7);
    EXPECT_THAT(effects(), IsEmpty());
    simulator.Datarefs().SetInt("sim/condition_int", 1);
    execute(8);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatai(sim/int, 8)"));
}

} // namespace
