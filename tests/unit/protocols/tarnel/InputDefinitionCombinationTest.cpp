#include <array>
#include <cstdint>
#include <ostream>
#include <string>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputDefinitionTest.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Every target type with every scaling mode under every condition. The datarefs of the range are
// -5 and 5, and that of the condition is 3.

struct TargetRow {
    int type;
    const char* name;
    // What a value that is applied does.
    const char* effect;
    bool isFloat;
};

constexpr std::array<TargetRow, 8> kTargets{{
    {0, "sim/int", nullptr, false},
    {1, "sim/int", "XPLMSetDatai(sim/int, 1)", false},
    {2, "sim/float", "XPLMSetDataf(sim/float, ", true},
    {3, "sim/ints", "XPLMSetDatavi(sim/ints, 2, 1)", false},
    {4, "sim/floats", "XPLMSetDatavf(sim/floats, 2, 1)", true},
    {5, "sim/int", nullptr, false},
    {6, "sim/command", "XPLMCommandOnce(sim/command)", false},
    {7, "sim/int", nullptr, false},
}};

struct ConditionRow {
    int condition;
    bool applies;
};

// For the value 1.
constexpr std::array<ConditionRow, 6> kConditions{
    {{0, true}, {1, false}, {2, true}, {3, false}, {4, true}, {5, true}}};

struct ScalingRow {
    int scaling;
    // What 1 becomes.
    std::uint32_t bits;
};

constexpr std::array<ScalingRow, 5> kScalings{
    {{0, 0x37800080}, {1, 0xC11FFEC0}, {2, 0xBF7FFE00}, {3, 0xC09FFEC0}, {4, 0x37800080}}};

using Combination = std::tuple<TargetRow, ConditionRow, ScalingRow>;

void PrintTo(const Combination& row, std::ostream* out) {
    *out << std::get<0>(row).type << ", " << std::get<1>(row).condition << ", "
         << std::get<2>(row).scaling;
}

class InputDefinitionCombinationTest : public InputDefinitionTest,
                                       public testing::WithParamInterface<Combination> {};

TEST_P(InputDefinitionCombinationTest, AppliesOne) {
    const auto& [target, condition, scaling] = GetParam();
    setRange(-5.0F, 5.0F);
    simulator.Datarefs().SetInt("sim/condition_int", 3);
    define({.targetIndex = 2,
            .intMinimum = -10,
            .intMaximum = 10,
            .targetType = target.type,
            .scaling = scaling.scaling,
            .rangeType = 2,
            .condition = condition.condition,
            .floatMinimum = -1.0F,
            .floatMaximum = 1.0F,
            .rangeMinimumName = "sim/minimum",
            .rangeMaximumName = "sim/maximum",
            .target = target.name,
            .conditionName = "sim/condition_int",
            .conditionType = 1});
    execute(1);
    if (target.effect == nullptr || !condition.applies) {
        EXPECT_THAT(effects(), IsEmpty());
        return;
    }
    EXPECT_THAT(effects(), ElementsAre(testing::StartsWith(target.effect)));
    if (target.isFloat) {
        EXPECT_EQ(target.type == 2 ? floatBits() : elementBits(2), scaling.bits);
    }
}

INSTANTIATE_TEST_SUITE_P(AllKinds, InputDefinitionCombinationTest,
                         testing::Combine(testing::ValuesIn(kTargets),
                                          testing::ValuesIn(kConditions),
                                          testing::ValuesIn(kScalings)),
                         [](const auto& row) {
                             return "Target" + std::to_string(std::get<0>(row.param).type) +
                                    "Condition" + std::to_string(std::get<1>(row.param).condition) +
                                    "Scaling" + std::to_string(std::get<2>(row.param).scaling);
                         });

} // namespace
