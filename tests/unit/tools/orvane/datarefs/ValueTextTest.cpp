#include <bit>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/datarefs/ValueText.h"

using orvane::tool::ExitCode;
using orvane::tool::Failure;
using orvane::tool::floatText;
using orvane::tool::parseValue;
using orvane::tool::typeText;
using orvane::tool::valueJson;
using orvane::tool::valueText;
using orvane::velmar::Type;
using orvane::velmar::Value;

namespace {

using Ints = std::vector<std::int32_t>;
using Floats = std::vector<float>;

std::string refusalOf(const std::string& text, Type type, std::uint32_t size = 0) {
    try {
        parseValue(text, type, size);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), ExitCode::WrongUsage);
        return failure.what();
    }
    return "accepted";
}

TEST(ValueTextTest, WritesTheShortestFloatThatReadsBackTheSame) {
    EXPECT_EQ(floatText(0.1F), "0.1");
    EXPECT_EQ(floatText(1.0F), "1");
    EXPECT_EQ(floatText(-0.0F), "-0");
    EXPECT_EQ(floatText(43200.0F), "43200");
    EXPECT_EQ(floatText(16777216.0F), "16777216");
    EXPECT_EQ(floatText(1.0F / 3.0F), "0.33333334");
    EXPECT_EQ(floatText(std::numeric_limits<float>::max()), "3.4028235e+38");
    EXPECT_EQ(floatText(std::numeric_limits<float>::denorm_min()), "1e-45");
    EXPECT_EQ(floatText(std::numeric_limits<float>::infinity()), "inf");
    EXPECT_EQ(floatText(std::numeric_limits<float>::quiet_NaN()), "nan");
}

TEST(ValueTextTest, ReadsBackEveryFloatThatItWrites) {
    // A stride through the bit patterns that meets every exponent, of both signs.
    for (std::uint64_t bits = 0; bits <= 0xFFFFFFFFU; bits += 0x000F4243U) {
        const auto number = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        if (std::isnan(number)) {
            continue;
        }
        const Value read = parseValue(floatText(number), Type::Float, 0);
        ASSERT_EQ(std::bit_cast<std::uint32_t>(std::get<float>(read)), bits) << floatText(number);
    }
}

TEST(ValueTextTest, WritesEachTypeAsText) {
    EXPECT_EQ(valueText(Value(std::int32_t{-42})), "-42");
    EXPECT_EQ(valueText(Value(0.5F)), "0.5");
    EXPECT_EQ(valueText(Value(std::uint8_t{255})), "255");
    EXPECT_EQ(valueText(Value(Ints{1, -2, 3})), "1,-2,3");
    EXPECT_EQ(valueText(Value(Floats{0.1F, 2.0F})), "0.1,2");
}

TEST(ValueTextTest, WritesEachTypeAsJson) {
    EXPECT_EQ(valueJson(Value(std::int32_t{-42})).dump(), "-42");
    EXPECT_EQ(valueJson(Value(0.1F)).dump(), "0.1");
    EXPECT_EQ(valueJson(Value(2.0F)).dump(), "2.0");
    EXPECT_EQ(valueJson(Value(std::uint8_t{255})).dump(), "255");
    EXPECT_EQ(valueJson(Value(Ints{1, -2})).dump(), "[1,-2]");
    EXPECT_EQ(valueJson(Value(Floats{0.1F, std::numeric_limits<float>::infinity()})).dump(),
              "[0.1,null]");
}

TEST(ValueTextTest, NamesTheTypes) {
    EXPECT_EQ(typeText(Type::Int, 0), "int");
    EXPECT_EQ(typeText(Type::Float, 0), "float");
    EXPECT_EQ(typeText(Type::Byte, 0), "byte");
    EXPECT_EQ(typeText(Type::IntArray, 8), "int[8]");
    EXPECT_EQ(typeText(Type::FloatArray, 3), "float[3]");
}

TEST(ValueTextTest, ReadsEachType) {
    EXPECT_EQ(parseValue("-2147483648", Type::Int, 0),
              Value(std::numeric_limits<std::int32_t>::min()));
    EXPECT_EQ(parseValue("1e3", Type::Float, 0), Value(1000.0F));
    EXPECT_EQ(parseValue("255", Type::Byte, 0), Value(std::uint8_t{255}));
    EXPECT_EQ(parseValue("1,2,3", Type::IntArray, 3), Value(Ints{1, 2, 3}));
    EXPECT_EQ(parseValue("0.5", Type::FloatArray, 1), Value(Floats{0.5F}));
}

TEST(ValueTextTest, SaysWhatAValueMustBe) {
    EXPECT_EQ(refusalOf("1.5", Type::Int),
              "\"1.5\" is not a whole number from -2147483648 to 2147483647");
    EXPECT_EQ(refusalOf("2147483648", Type::Int),
              "\"2147483648\" is not a whole number from -2147483648 to 2147483647");
    EXPECT_EQ(refusalOf("", Type::Int),
              "\"\" is not a whole number from -2147483648 to 2147483647");
    EXPECT_EQ(refusalOf("256", Type::Byte), "\"256\" is not a whole number from 0 to 255");
    EXPECT_EQ(refusalOf("-1", Type::Byte), "\"-1\" is not a whole number from 0 to 255");
    EXPECT_EQ(refusalOf("ten", Type::Float), "\"ten\" is not a number that a float can hold");
    EXPECT_EQ(refusalOf("1e39", Type::Float), "\"1e39\" is not a number that a float can hold");
    EXPECT_EQ(refusalOf(" 1", Type::Float), "\" 1\" is not a number that a float can hold");
}

TEST(ValueTextTest, CountsTheElementsOfAnArray) {
    EXPECT_EQ(refusalOf("1,2", Type::IntArray, 3), "expected 3 elements, got 2 in \"1,2\"");
    EXPECT_EQ(refusalOf("1,2,3,4", Type::IntArray, 3), "expected 3 elements, got 4 in \"1,2,3,4\"");
    EXPECT_EQ(refusalOf("1,,3", Type::FloatArray, 3), "\"\" is not a number that a float can hold");
    EXPECT_EQ(refusalOf("1,2,", Type::FloatArray, 3), "\"\" is not a number that a float can hold");
}

} // namespace
