#include <limits>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "orvane/tarnel/Definitions.h"
#include "tarnel/InputRecord.h"

namespace {

using namespace orvane::tarnel;
using std::chrono::milliseconds;

template <typename Action>
std::string refusalOf(Action action) {
    try {
        action();
    } catch (const std::invalid_argument& error) {
        return error.what();
    }
    return "none";
}

const std::string kLongName(100, 'x');
const std::string kLongestName(99, 'x');

TEST(InputBuilderTest, RefusesNamesThatTheirFieldCannotHold) {
    EXPECT_EQ(refusalOf([] { Input::toInt(1, ""); }), "a name is empty");
    EXPECT_EQ(refusalOf([] { Input::toInt(1, kLongName); }),
              "the name " + kLongName + " has 100 bytes; at most 99 are allowed");
    EXPECT_EQ(refusalOf([] { Input::toInt(1, std::string("a\0b", 3)); }),
              "the name a contains a zero byte");
    EXPECT_EQ(refusalOf([] { Input::toInt(1, kLongestName); }), "none");
    EXPECT_THROW(Input::toFloat(1, "a").scaledByDatarefs(kLongName, "b"), std::invalid_argument);
    EXPECT_THROW(Input::toFloat(1, "a").scaledByDatarefs("b", kLongName), std::invalid_argument);
    EXPECT_THROW(Input::toInt(1, "a").skippedWhileZero({kLongName}), std::invalid_argument);
}

TEST(InputBuilderTest, RefusesNegativeElements) {
    EXPECT_EQ(refusalOf([] { Input::toIntElement(1, "a", -1); }), "element -1 of a does not exist");
    EXPECT_THROW(Input::toFloatElement(1, "a", -1), std::invalid_argument);
    EXPECT_THROW(Input::toFloat(1, "a").scaledByDatarefElements("b", "c", -1),
                 std::invalid_argument);
    EXPECT_THROW(
        Input::toInt(1, "a").skippedWhileZero({"b", ConditionDataref::Type::IntElement, -1}),
        std::invalid_argument);
}

TEST(InputBuilderTest, ScalesFloatsOnly) {
    EXPECT_EQ(refusalOf([] { Input::toInt(1, "a").scaledByIntRange(0, 1); }),
              "the input of a is not a float and cannot be scaled");
    EXPECT_THROW(Input::toIntElement(1, "a", 0).scaledByFloatRange(0, 1), std::invalid_argument);
    EXPECT_THROW(Input::toCommand(1, "a").scaledByDatarefs("b", "c"), std::invalid_argument);
    EXPECT_NO_THROW(Input::toFloatElement(1, "a", 0).scaledByFloatRange(0, 1));
}

TEST(InputBuilderTest, RefusesAnIntRangeWhoseWidthOverflows) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    EXPECT_THROW(Input::toFloat(1, "a").scaledByIntRange(-1, kMost), std::invalid_argument);
    EXPECT_NO_THROW(Input::toFloat(1, "a").scaledByIntRange(0, kMost));
}

TEST(InputBuilderTest, RefusesAConditionOfAnUnknownType) {
    EXPECT_THROW(
        Input::toInt(1, "a").skippedWhilePositive({"b", static_cast<ConditionDataref::Type>(5), 0}),
        std::invalid_argument);
}

TEST(InputBuilderTest, KeepsTheLastConditionOnly) {
    const Input input = Input::toInt(1, "a").skippedWhileZero({"b"}).skippedWhenOne();
    EXPECT_EQ(inputRecordOf(input).condition, 1);
    EXPECT_EQ(inputRecordOf(input).conditionDataref, "");
    EXPECT_EQ(inputRecordOf(input).conditionType, 0);
}

TEST(InputBuilderTest, FixesATargetToAValueOfItsType) {
    EXPECT_EQ(refusalOf([] { Input::toFloat(1, "a").fixed(1); }),
              "the input of a is a float and cannot be fixed to an int");
    EXPECT_EQ(refusalOf([] { Input::toCommand(1, "a").fixed(1.0F); }),
              "the input of a is not a float and cannot be fixed to one");
    EXPECT_EQ(refusalOf([] { Input::toIntElement(1, "a", 0).fixed(2); }),
              "the input of a is an element of an int array and can be fixed to 1 only");
    EXPECT_NO_THROW(Input::toIntElement(1, "a", 0).fixed(1));
}

TEST(InputBuilderTest, HoldsAndRepeatsCommandsOnlyAndNotBoth) {
    EXPECT_THROW(Input::toInt(1, "a").held(), std::invalid_argument);
    EXPECT_THROW(Input::toInt(1, "a").repeatedEvery(milliseconds(1)), std::invalid_argument);
    EXPECT_THROW(Input::toCommand(1, "a").held().repeatedEvery(milliseconds(1)),
                 std::invalid_argument);
    EXPECT_THROW(Input::toCommand(1, "a").repeatedEvery(milliseconds(1)).held(),
                 std::invalid_argument);
    EXPECT_EQ(refusalOf([] { Input::toCommand(1, "a").repeatedEvery(milliseconds(0)); }),
              "the input of a cannot have a repeat interval of 0 ms");
    EXPECT_THROW(Input::toCommand(1, "a").repeatedEvery(milliseconds(0x80000000LL)),
                 std::invalid_argument);
}

TEST(OutputBuilderTest, RefusesWhatTheServerWouldMisread) {
    EXPECT_EQ(refusalOf([] { Output::ofFloat(1, ""); }), "a name is empty");
    EXPECT_THROW(Output::ofFloat(1, kLongName), std::invalid_argument);
    EXPECT_EQ(refusalOf([] { Output::ofInt(0xFFFF, "a"); }),
              "the output a has the aircraft's number, 65535");
    EXPECT_EQ(refusalOf([] { Output::ofIntArray(1, "a", 0); }),
              "the output a has 0 elements; at least 1 is needed");
    EXPECT_THROW(Output::ofFloatArray(1, "a", 1, -1), std::invalid_argument);
    EXPECT_EQ(refusalOf([] { Output::ofCommand(1, "sim/a"); }),
              "the command sim/a cannot be observed: only those under kyr/ can");
    EXPECT_NO_THROW(Output::ofCommand(0x10000, "kyr/a"));
}

TEST(DefinitionsTest, KeepsTheOrder) {
    Definitions definitions;
    definitions.add(Input::toInt(2, "b")).add(Input::toInt(1, "a")).add(Input::toInt(2, "c"));
    ASSERT_EQ(definitions.inputs().size(), 3U);
    EXPECT_EQ(definitions.inputs()[0].target(), "b");
    EXPECT_EQ(definitions.inputs()[2].target(), "c");
    EXPECT_TRUE(definitions.declares(1));
    EXPECT_TRUE(definitions.declares(2));
    EXPECT_FALSE(definitions.declares(3));
}

TEST(DefinitionsTest, HasAnIdentifierAndACommandOnlyOnce) {
    Definitions definitions;
    definitions.add(Output::ofCommand(1, "kyr/a")).add(Output::ofInt(2, "b"));
    EXPECT_EQ(refusalOf([&] { definitions.add(Output::ofInt(1, "c")); }),
              "the outputs kyr/a and c both have the identifier 1");
    EXPECT_EQ(refusalOf([&] { definitions.add(Output::ofCommand(3, "kyr/a")); }),
              "the command kyr/a is already reported as 1 and cannot also be reported as 3");
    EXPECT_NO_THROW(definitions.add(Output::ofInt(3, "b")));
    EXPECT_EQ(definitions.outputs().size(), 3U);
}

TEST(DefinitionsTest, RefusesAnswersThatTheServerCannotSend) {
    Definitions definitions;
    definitions.add(Output::ofFloatArray(1, "a", 60'000'000));
    EXPECT_THROW(definitions.add(Output::ofFloatArray(2, "b", 60'000'000)), std::invalid_argument);
    EXPECT_EQ(definitions.outputs().size(), 1U);
    EXPECT_EQ(definitions.answerSize(), 240'000'024U);
}

TEST(DefinitionsTest, CountsTheAircraftAndTheLengthOfAnAnswer) {
    EXPECT_NO_THROW(Definitions().add(Output::ofIntArray(1, "a", 67'108'856)));
    EXPECT_THROW(Definitions().add(Output::ofIntArray(1, "a", 67'108'857)), std::invalid_argument);
}

TEST(DefinitionsTest, RefusesAnArrayOfMoreBytesThan32BitsCount) {
    EXPECT_THROW(Definitions().add(Output::ofIntArray(1, "a", 0x40000000)), std::invalid_argument);
    EXPECT_THROW(Definitions().add(Output::ofFloatArray(1, "a", 0x40000001)),
                 std::invalid_argument);
}

} // namespace
