#include <bit>
#include <cstdint>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "InputDefinitionTest.h"

namespace {

using testing::ElementsAre;

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

InputRecord toFloat(InputRecord record) {
    record.targetType = 2;
    record.target = "sim/float";
    return record;
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
    define(toFloat(GetParam().record));
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
    define(toFloat(datarefRange(2)));
    execute(0);
    EXPECT_EQ(floatBits(), 0xC0A00000U);
    execute(12345);
    EXPECT_EQ(floatBits(), 0xC0477108U);
    execute(65535);
    EXPECT_EQ(floatBits(), 0x40A00000U);
}

TEST_F(InputDefinitionTest, ScalesInReverseWhenBothRangeDatarefsAreTheSameNegativeNumber) {
    setRange(-5.0F, -5.0F);
    define(toFloat(datarefRange(2)));
    execute(0);
    EXPECT_EQ(floatBits(), 0x40A00000U);
    execute(65535);
    EXPECT_EQ(floatBits(), 0xC0A00000U);
}

TEST_F(InputDefinitionTest, ScalesEveryValueToZeroWhenBothRangeDatarefsAreZero) {
    define(toFloat(datarefRange(2)));
    for (const std::int32_t value : {0, 1, 12345, 65535}) {
        simulator.Datarefs().SetFloat("sim/float", 9.0F);
        execute(value);
        EXPECT_EQ(floatBits(), 0x00000000U) << value;
    }
}

TEST_F(InputDefinitionTest, ScalesFromAZeroMinimumToTheMaximumDataref) {
    setRange(0.0F, 5.0F);
    define(toFloat(datarefRange(2)));
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

} // namespace
