#include <functional>

#include <gtest/gtest.h>

#include "tools/orvane/cli/Failure.h"
#include "tools/orvane/datarefs/DatarefArgument.h"

using orvane::tool::DatarefArgument;
using orvane::tool::ExitCode;
using orvane::tool::Failure;
using orvane::tool::parseAssignment;
using orvane::tool::parseAssignments;
using orvane::tool::parseDatarefArgument;
using orvane::tool::parseDatarefArguments;
using orvane::velmar::Type;
using orvane::velmar::Value;

namespace {

std::string refusal(const std::function<void()>& parse) {
    try {
        parse();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.Code(), ExitCode::WrongUsage);
        return failure.what();
    }
    return "accepted";
}

std::string argumentRefusal(const std::string& text) {
    return refusal([&] { parseDatarefArgument(text); });
}

TEST(DatarefArgumentTest, TakesANameAlone) {
    const DatarefArgument argument = parseDatarefArgument("sim/time/paused");
    EXPECT_EQ(argument.name, "sim/time/paused");
    EXPECT_EQ(argument.type, std::nullopt);
    EXPECT_EQ(argument.size, 0U);
    EXPECT_EQ(argument.unit, "");
    EXPECT_EQ(argument.value, std::nullopt);
    EXPECT_EQ(argument.text, "sim/time/paused");
    EXPECT_EQ(argument.Dataref().type, Type::Float);
}

TEST(DatarefArgumentTest, KnowsTheFiveTypes) {
    EXPECT_EQ(parseDatarefArgument("a:int").type, Type::Int);
    EXPECT_EQ(parseDatarefArgument("a:float").type, Type::Float);
    EXPECT_EQ(parseDatarefArgument("a:byte").type, Type::Byte);
    EXPECT_EQ(parseDatarefArgument("a:int[8]").type, Type::IntArray);
    EXPECT_EQ(parseDatarefArgument("a:int[8]").size, 8U);
    EXPECT_EQ(parseDatarefArgument("a:float[500000]").type, Type::FloatArray);
    EXPECT_EQ(parseDatarefArgument("a:float[500000]").Dataref().size, 500000U);
}

TEST(DatarefArgumentTest, TakesAUnit) {
    EXPECT_EQ(parseDatarefArgument("a:float@m/s").unit, "m/s");
    EXPECT_EQ(parseDatarefArgument("a@kt").name, "a");
    EXPECT_EQ(parseDatarefArgument("a@kt").unit, "kt");
    EXPECT_EQ(parseDatarefArgument("a:float[3]@kt").text, "a:float[3]@kt");
}

TEST(DatarefArgumentTest, TakesAValueIfOneIsNeeded) {
    const DatarefArgument argument = parseAssignment("a/b:float[2]@deg=1.5,-2");
    EXPECT_EQ(argument.name, "a/b");
    EXPECT_EQ(argument.type, Type::FloatArray);
    EXPECT_EQ(argument.unit, "deg");
    EXPECT_EQ(argument.value, "1.5,-2");
    EXPECT_EQ(argument.text, "a/b:float[2]@deg");
    EXPECT_EQ(parseAssignment("a=b=c").value, "b=c");
}

TEST(DatarefArgumentTest, SaysWhatIsWrongWithAType) {
    EXPECT_EQ(argumentRefusal("a:double"),
              "double: the protocol has no doubles; the types are int, float, byte, int[N] and "
              "float[N]");
    EXPECT_EQ(argumentRefusal("a:bool"),
              "bool: unknown type; the types are int, float, byte, int[N] and float[N]");
    EXPECT_EQ(argumentRefusal("a:"),
              ": unknown type; the types are int, float, byte, int[N] and float[N]");
    EXPECT_EQ(argumentRefusal("a:byte[4]"),
              "byte[4]: unknown array type; the types are int, float, byte, int[N] and "
              "float[N]");
    EXPECT_EQ(argumentRefusal("a:int[4"), "int[4: the bracket is not closed");
}

TEST(DatarefArgumentTest, SaysHowManyElementsAnArrayMayHave) {
    const std::string reason = ": an array has 1 to 500000 elements, as in int[8]";
    EXPECT_EQ(argumentRefusal("a:int[]"), "int[]" + reason);
    EXPECT_EQ(argumentRefusal("a:int[0]"), "int[0]" + reason);
    EXPECT_EQ(argumentRefusal("a:int[-1]"), "int[-1]" + reason);
    EXPECT_EQ(argumentRefusal("a:int[x]"), "int[x]" + reason);
    EXPECT_EQ(argumentRefusal("a:int[8x]"), "int[8x]" + reason);
    EXPECT_EQ(argumentRefusal("a:int[500001]"), "int[500001]" + reason);
    EXPECT_EQ(argumentRefusal("a:int[99999999999]"), "int[99999999999]" + reason);
}

TEST(DatarefArgumentTest, SaysWhatIsWrongWithAName) {
    EXPECT_EQ(argumentRefusal(""), ": the name is missing");
    EXPECT_EQ(argumentRefusal(":int"), ":int: the name is missing");
    EXPECT_EQ(argumentRefusal("@kt"), "@kt: the name is missing");
    EXPECT_EQ(argumentRefusal("[3]"), "[3]: the name is missing");
    EXPECT_EQ(parseDatarefArgument(std::string(255, 'a')).name.size(), 255U);
    EXPECT_EQ(argumentRefusal(std::string(256, 'a')),
              std::string(256, 'a') + ": a name has at most 255 characters");
}

TEST(DatarefArgumentTest, TakesAnElementOfAnArray) {
    const DatarefArgument argument = parseDatarefArgument("a/b[3]:int@kt");
    EXPECT_EQ(argument.name, "a/b[3]");
    EXPECT_EQ(argument.type, Type::Int);
    EXPECT_EQ(argument.size, 0U);
    EXPECT_EQ(argument.unit, "kt");
    EXPECT_EQ(argument.text, "a/b[3]:int@kt");
    EXPECT_EQ(argument.NameAndType(), "a/b[3]:int");
    EXPECT_EQ(argument.Dataref().name, "a/b");
    EXPECT_EQ(argument.Dataref().type, Type::IntArray);
    EXPECT_EQ(argument.Dataref().size, 4U);
    EXPECT_EQ(argument.ValueIn(Value(std::vector<std::int32_t>{1, 2, 3, 4})), Value(4));
}

TEST(DatarefArgumentTest, TakesSomeElementsOfAnArrayWithoutTheLast) {
    const DatarefArgument argument = parseDatarefArgument("a[2:5]");
    EXPECT_EQ(argument.name, "a[2:5]");
    EXPECT_EQ(argument.type, std::nullopt);
    EXPECT_EQ(argument.Dataref().type, Type::FloatArray);
    EXPECT_EQ(argument.Dataref().size, 5U);
    EXPECT_EQ(argument.ElementName(0), "a[2]");
    EXPECT_EQ(argument.ValueIn(Value(std::vector<float>{0, 1, 2, 3, 4})),
              Value(std::vector<float>{2, 3, 4}));
    EXPECT_EQ(parseDatarefArgument("a[2:3]:float").type, Type::FloatArray);
    EXPECT_EQ(parseDatarefArgument("a[2:3]:float").size, 1U);
    EXPECT_EQ(parseDatarefArgument("a[0:500000]").Dataref().size, 500000U);
}

TEST(DatarefArgumentTest, SaysWhatIsWrongWithElements) {
    const std::string syntax = ": write [3] for one element, or [2:5] for elements 2 to 4";
    EXPECT_EQ(argumentRefusal("a[]"), "a[]" + syntax);
    EXPECT_EQ(argumentRefusal("a[x]"), "a[x]" + syntax);
    EXPECT_EQ(argumentRefusal("a[-1]"), "a[-1]" + syntax);
    EXPECT_EQ(argumentRefusal("a[1:]"), "a[1:]" + syntax);
    EXPECT_EQ(argumentRefusal("a[1:2:3]"), "a[1:2:3]" + syntax);
    EXPECT_EQ(argumentRefusal("a[3:3]"), "a[3:3]: [3:3] has no elements");
    EXPECT_EQ(argumentRefusal("a[3"), "a[3: the bracket is not closed");
    EXPECT_EQ(argumentRefusal("a[500000]"),
              "a[500000]: only the first 500000 elements are available");
    EXPECT_EQ(argumentRefusal("a[3]:float[2]"),
              "a[3]:float[2]: elements are int or float, as in NAME[3]:float");
    EXPECT_EQ(argumentRefusal("a[3]:byte"),
              "a[3]:byte: elements are int or float, as in NAME[3]:float");
    EXPECT_EQ(argumentRefusal("a[3]b"), "a[3]b: elements are int or float, as in NAME[3]:float");
}

TEST(DatarefArgumentTest, RegistersTheElementsOfOneArrayAlike) {
    const auto arguments = parseDatarefArguments({"a[1]", "b", "a[3:6]:int", "a[0]"});
    for (const std::size_t i : {0U, 2U, 3U}) {
        EXPECT_EQ(arguments[i].Dataref().type, Type::IntArray) << i;
        EXPECT_EQ(arguments[i].Dataref().size, 6U) << i;
    }
    EXPECT_EQ(arguments[0].type, Type::Int);
    EXPECT_EQ(arguments[2].size, 3U);
    EXPECT_EQ(refusal([] {
                  parseDatarefArguments({"a[1]:int", "a[2]:float"});
              }),
              "a: named both as ints and as floats");
    EXPECT_EQ(refusal([] {
                  parseDatarefArguments({"a[1]", "a:float[3]"});
              }),
              "a: named both as a whole and by elements");
    EXPECT_EQ(refusal([] { parseDatarefArguments({"a[1]", "a[1]:int"}); }), "a[1]: named twice");
}

TEST(DatarefArgumentTest, PutsElementsIntoWhatTheirArrayHad) {
    const auto arguments = parseDatarefArguments({"a[1]", "b", "a[2:4]"});
    const Value before(std::vector<float>{9, 8, 7, 6});
    const auto whole = orvane::tool::wholeValues(
        arguments, std::vector<Value>{Value(0.5F), Value(1.0F), Value(std::vector<float>{3, 4})},
        std::vector<Value>{before, Value(0.0F), before});
    ASSERT_EQ(whole.size(), 2U);
    EXPECT_EQ(whole[0].first, "a");
    EXPECT_EQ(whole[0].second, Value(std::vector<float>{9, 0.5F, 3, 4}));
    EXPECT_EQ(whole[1].first, "b");
}

TEST(DatarefArgumentTest, RequiresAValueOnlyIfOneIsNeeded) {
    EXPECT_EQ(argumentRefusal("a=1"), "a=1: unexpected value; only \"set\" takes one");
    EXPECT_EQ(refusal([] { parseAssignment("a:int"); }),
              "a:int: a value is missing: NAME=VALUE or NAME:TYPE=VALUE");
    EXPECT_EQ(refusal([] { parseAssignment("a="); }), "a=: the value is empty");
}

TEST(DatarefArgumentTest, RefusesADatarefThatIsNamedTwice) {
    EXPECT_EQ(refusal([] { parseDatarefArguments({"a", "b", "a:int"}); }), "a: named twice");
    EXPECT_EQ(refusal([] { parseAssignments({"a=1", "a=2"}); }), "a: named twice");
    EXPECT_EQ(parseDatarefArguments({"a", "b:int"}).at(1).name, "b");
    EXPECT_EQ(parseAssignments({"a=1", "b=2"}).at(1).value, "2");
}

} // namespace
