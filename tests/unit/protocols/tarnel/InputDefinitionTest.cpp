#include "protocols/tarnel/InputDefinition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <tuple>

#include "InputTargetsFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class InputDefinitionTest : public InputTargetsFixture {
protected:
    void define(const InputRecord& record) {
        definition = std::make_unique<InputDefinition>(toRecord(record));
        simulator.Recorder().Clear();
    }

    void execute(std::int32_t value, unsigned long nowMs = 1'000'000) {
        Bytes bytes = i32(value);
        definition->ExecuteAction(bytes.data(), nowMs);
    }

    void setRange(float minimum, float maximum) {
        simulator.Datarefs().SetFloat("sim/minimum", minimum);
        simulator.Datarefs().SetFloat("sim/maximum", maximum);
    }

    // The names looked up so far: "function(name)".
    std::vector<std::string> lookUps() {
        std::vector<std::string> found;
        for (const auto& call : simulator.Recorder().Calls()) {
            found.push_back(call.function + "(" + call.arguments + ")");
        }
        return found;
    }

    std::unique_ptr<InputDefinition> definition;
};

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

// Conditions on a dataref, which is of each type in turn and has this value.

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

// Float targets. The bits were computed outside the plugin, rounding to single precision after
// every operation; those marked differ under fused or double-precision arithmetic.

struct Scaled {
    std::string name;
    InputRecord record;
    std::int32_t raw;
    std::uint32_t bits;
};

void PrintTo(const Scaled& row, std::ostream* out) {
    *out << row.name;
}

class InputDefinitionScalingTest : public InputDefinitionTest,
                                   public testing::WithParamInterface<Scaled> {
protected:
    InputDefinitionScalingTest() {
        setRange(-5.0F, 5.0F);
        simulator.Datarefs().SetFloatArray("sim/minimums", {1.0F, -5.0F, 1.0F, 2.5F});
        simulator.Datarefs().SetFloatArray("sim/maximums", {1.0F, 5.0F, 1.0F, 10.0F});
    }
};

TEST_P(InputDefinitionScalingTest, SetsAFloatToExactlyTheseBits) {
    InputRecord record = GetParam().record;
    record.targetType = 2;
    record.target = "sim/float";
    define(record);
    execute(GetParam().raw);
    EXPECT_EQ(floatBits(), GetParam().bits);
}

TEST_P(InputDefinitionScalingTest, SetsOneElementOfAFloatArrayToExactlyTheseBits) {
    InputRecord record = GetParam().record;
    record.targetIndex = 6;
    record.targetType = 4;
    record.target = "sim/floats";
    define(record);
    execute(GetParam().raw);
    EXPECT_EQ(elementBits(6), GetParam().bits);
    EXPECT_THAT(effects(), ElementsAre("XPLMSetDatavf(sim/floats, 6, 1)"));
}

const InputRecord kPlain{};
const InputRecord kUnknownMode{.intMaximum = 5, .scaling = 4, .floatMaximum = 5.0F};
const InputRecord kNegativeMode{.scaling = -1, .floatMaximum = 5.0F};

INSTANTIATE_TEST_SUITE_P(
    Plain, InputDefinitionScalingTest,
    testing::Values(Scaled{"Zero", kPlain, 0, 0x00000000}, Scaled{"One", kPlain, 1, 0x37800080},
                    Scaled{"Two", kPlain, 2, 0x38000080}, Scaled{"Odd", kPlain, 12345, 0x3E40E4C1},
                    Scaled{"Middle", kPlain, 32767, 0x3EFFFF00},
                    Scaled{"UpperMiddle", kPlain, 32768, 0x3F000080},
                    Scaled{"FullScale", kPlain, 65535, 0x3F800000},
                    Scaled{"BeyondFullScale", kPlain, 65536, 0x3F800080},
                    Scaled{"MinusOne", kPlain, -1, 0xB7800080},
                    Scaled{"MoreDigitsThanAFloat", kPlain, 16777217, 0x43800080},
                    Scaled{"Largest", kPlain, 2147483647, 0x47000080},
                    Scaled{"UnknownMode", kUnknownMode, 12345, 0x3E40E4C1},
                    Scaled{"NegativeMode", kNegativeMode, 12345, 0x3E40E4C1}),
    [](const auto& row) { return row.param.name; });

InputRecord intRange(std::int32_t minimum, std::int32_t maximum) {
    return {.intMinimum = minimum, .intMaximum = maximum, .scaling = 1};
}

INSTANTIATE_TEST_SUITE_P(
    IntRange, InputDefinitionScalingTest,
    testing::Values(
        Scaled{"SymmetricZero", intRange(-10, 10), 0, 0xC1200000},
        Scaled{"SymmetricOne", intRange(-10, 10), 1, 0xC11FFEC0},
        // Fused: C0C77107.
        Scaled{"SymmetricOdd", intRange(-10, 10), 12345, 0xC0C77108},
        Scaled{"SymmetricMiddle", intRange(-10, 10), 32767, 0xB9200000},
        Scaled{"SymmetricFullScale", intRange(-10, 10), 65535, 0x41200000},
        Scaled{"Identity", intRange(0, 65535), 12345, 0x4640E400},
        Scaled{"Signed", intRange(-32768, 32767), 32767, 0xBF800000},
        Scaled{"Reversed", intRange(100, -100), 65535, 0xC2C80000},
        Scaled{"ReversedMiddle", intRange(100, -100), 32767, 0x3AC80000},
        Scaled{"Empty", intRange(7, 7), 12345, 0x40E00000},
        // In floats both ends would be 4 apart.
        Scaled{"DifferenceTakenInIntegers", intRange(16777217, 16777219), 65535, 0x4B800001},
        // The difference is -1 then.
        Scaled{"WiderThanAnInt", intRange(-2147483647 - 1, 2147483647), 65535, 0xCF000000},
        Scaled{"UpToTheLargestInt", intRange(0, 2147483647), 65535, 0x4F000000}),
    [](const auto& row) { return row.param.name; });

InputRecord floatRange(float minimum, float maximum) {
    return {.scaling = 2, .floatMinimum = minimum, .floatMaximum = maximum};
}

INSTANTIATE_TEST_SUITE_P(
    FloatRange, InputDefinitionScalingTest,
    testing::Values(Scaled{"FullScaleToOne", floatRange(-1.0F, 1.0F), 65535, 0x3F800000},
                    Scaled{"ZeroToMinusOne", floatRange(-1.0F, 1.0F), 0, 0xBF800000},
                    // Fused: B7800100. Double precision: B7800080.
                    Scaled{"Middle", floatRange(-1.0F, 1.0F), 32767, 0xB7800000},
                    // Double precision: 37800080.
                    Scaled{"UpperMiddle", floatRange(-1.0F, 1.0F), 32768, 0x37800000},
                    Scaled{"BelowZero", floatRange(-1.0F, 1.0F), -1, 0xBF800100},
                    Scaled{"BeyondFullScale", floatRange(-1.0F, 1.0F), 100000, 0x400350C3},
                    // Fused: 3DCCCB34.
                    Scaled{"SmallRange", floatRange(-0.1F, 0.1F), 65534, 0x3DCCCB33},
                    // Fused and double precision: 3F3332CD.
                    Scaled{"PositiveRange", floatRange(0.3F, 0.7F), 65534, 0x3F3332CC},
                    // Fused: 447A0001.
                    Scaled{"WideRange", floatRange(-500.0F, 1000.0F), 65535, 0x447A0000},
                    // Fused and double precision: C35970E9.
                    Scaled{"WideRangeOdd", floatRange(-500.0F, 1000.0F), 12345, 0xC35970E8},
                    Scaled{"Reversed", floatRange(5.0F, -5.0F), 12345, 0x40477108},
                    // The symmetric range is for scaling mode 3 alone.
                    Scaled{"BothEqual", floatRange(3.0F, 3.0F), 65535, 0x40400000}),
    [](const auto& row) { return row.param.name; });

InputRecord datarefRange(std::int32_t type, std::int32_t index = 0) {
    const bool isArray = type == 4;
    return {.scaling = 3,
            .rangeType = type,
            .rangeIndex = index,
            .floatMaximum = 77.0F,
            .rangeMinimumName = isArray ? "sim/minimums" : "sim/minimum",
            .rangeMaximumName = isArray ? "sim/maximums" : "sim/maximum"};
}

INSTANTIATE_TEST_SUITE_P(
    DatarefRange, InputDefinitionScalingTest,
    testing::Values(Scaled{"Zero", datarefRange(2), 0, 0xC0A00000},
                    Scaled{"One", datarefRange(2), 1, 0xC09FFEC0},
                    // Fused and double precision: C0477107.
                    Scaled{"Odd", datarefRange(2), 12345, 0xC0477108},
                    Scaled{"UpperMiddle", datarefRange(2), 32768, 0x38A00000},
                    Scaled{"FullScale", datarefRange(2), 65535, 0x40A00000},
                    Scaled{"ArrayElementOdd", datarefRange(4, 1), 12345, 0xC0477108},
                    Scaled{"ArrayElementZero", datarefRange(4, 3), 0, 0x40200000},
                    Scaled{"ArrayElementUpperMiddle", datarefRange(4, 3), 32768, 0x40C80078},
                    Scaled{"ArrayElementFullScale", datarefRange(4, 3), 65535, 0x41200000},
                    Scaled{"ArrayElementsBothEqual", datarefRange(4, 2), 0, 0xBF800000},
                    Scaled{"UnknownTypePlain", datarefRange(0), 12345, 0x3E40E4C1},
                    Scaled{"IntTypePlain", datarefRange(1), 12345, 0x3E40E4C1},
                    Scaled{"IntArrayTypePlain", datarefRange(3), 12345, 0x3E40E4C1},
                    Scaled{"CommandTypePlain", datarefRange(6), 65535, 0x3F800000}),
    [](const auto& row) { return row.param.name; });

TEST_F(InputDefinitionTest, ScalesSymmetricallyWhenBothRangeDatarefsAreEqual) {
    setRange(5.0F, 5.0F);
    InputRecord record = datarefRange(2);
    record.targetType = 2;
    record.target = "sim/float";
    define(record);
    execute(0);
    EXPECT_EQ(floatBits(), 0xC0A00000U);
    execute(12345);
    EXPECT_EQ(floatBits(), 0xC0477108U);
    execute(65535);
    EXPECT_EQ(floatBits(), 0x40A00000U);
}

TEST_F(InputDefinitionTest, ScalesInReverseWhenBothRangeDatarefsAreTheSameNegativeNumber) {
    setRange(-5.0F, -5.0F);
    InputRecord record = datarefRange(2);
    record.targetType = 2;
    record.target = "sim/float";
    define(record);
    execute(0);
    EXPECT_EQ(floatBits(), 0x40A00000U);
    execute(65535);
    EXPECT_EQ(floatBits(), 0xC0A00000U);
}

TEST_F(InputDefinitionTest, ScalesEveryValueToZeroWhenBothRangeDatarefsAreZero) {
    InputRecord record = datarefRange(2);
    record.targetType = 2;
    record.target = "sim/float";
    define(record);
    for (const std::int32_t value : {0, 1, 12345, 65535}) {
        simulator.Datarefs().SetFloat("sim/float", 9.0F);
        execute(value);
        EXPECT_EQ(floatBits(), 0x00000000U) << value;
    }
}

TEST_F(InputDefinitionTest, ScalesFromAZeroMinimumToTheMaximumDataref) {
    setRange(0.0F, 5.0F);
    InputRecord record = datarefRange(2);
    record.targetType = 2;
    record.target = "sim/float";
    define(record);
    execute(12345);
    EXPECT_EQ(floatBits(), 0x3F711DF1U);
    setRange(5.0F, 0.0F);
    execute(12345);
    EXPECT_EQ(floatBits(), 0x4081DC42U) << "the range is read anew for every value";
}

TEST_F(InputDefinitionTest, SetsAFloatToTheFixedFloatValueWhateverTheScaling) {
    for (const int scaling : {0, 1, 2, 3}) {
        SCOPED_TRACE(scaling);
        simulator.Datarefs().SetFloat("sim/float", 9.0F);
        define({.fixedInt = 42,
                .intMaximum = 5,
                .targetType = 2,
                .scaling = scaling,
                .rangeType = 2,
                .fixedFloat = 0.1F,
                .floatMaximum = 5.0F,
                .useFixed = 2,
                .target = "sim/float"});
        execute(65535);
        EXPECT_EQ(floatBits(), 0x3DCCCCCDU);
    }
}

TEST_F(InputDefinitionTest, SetsAnElementOfAFloatArrayToTheFixedFloatValue) {
    define({.targetIndex = 7,
            .targetType = 4,
            .scaling = 2,
            .fixedFloat = -0.1F,
            .floatMaximum = 5.0F,
            .useFixed = 1,
            .target = "sim/floats"});
    execute(65535);
    EXPECT_EQ(elementBits(7), 0xBDCCCCCDU);
}

TEST_F(InputDefinitionTest, PassesAFixedFloatOnBitByBit) {
    define({.targetType = 4,
            .fixedFloat = std::bit_cast<float>(0x7FC12345U),
            .useFixed = 1,
            .target = "sim/floats"});
    execute(0);
    EXPECT_EQ(elementBits(0), 0x7FC12345U);
}

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
