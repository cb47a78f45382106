#include "tools/orvane/datarefs/DatarefArgument.h"

#include <gtest/gtest.h>

#include <functional>

#include "tools/orvane/cli/Failure.h"

using orvane::tool::DatarefArgument;
using orvane::tool::ExitCode;
using orvane::tool::Failure;
using orvane::tool::parseAssignment;
using orvane::tool::parseAssignments;
using orvane::tool::parseDatarefArgument;
using orvane::tool::parseDatarefArguments;
using orvane::velmar::Type;

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

TEST(DatarefArgumentTest, TakesAValueWhereOneIsWanted) {
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
              "double: the protocol carries no doubles; the types are int, float, byte, int[N] and "
              "float[N]");
    EXPECT_EQ(argumentRefusal("a:bool"),
              "bool: no such type; the types are int, float, byte, int[N] and float[N]");
    EXPECT_EQ(argumentRefusal("a:"),
              ": no such type; the types are int, float, byte, int[N] and float[N]");
    EXPECT_EQ(argumentRefusal("a:byte[4]"),
              "byte[4]: there are no such arrays; the types are int, float, byte, int[N] and "
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
    EXPECT_EQ(argumentRefusal("a[3]"),
              "a[3]: write an array as a:float[N] or a:int[N], which is its first N elements");
    EXPECT_EQ(parseDatarefArgument(std::string(255, 'a')).name.size(), 255U);
    EXPECT_EQ(argumentRefusal(std::string(256, 'a')),
              std::string(256, 'a') + ": a name has at most 255 characters");
}

TEST(DatarefArgumentTest, WantsAValueOnlyWhereOneIsWanted) {
    EXPECT_EQ(argumentRefusal("a=1"), "a=1: a value has no place here; only \"set\" takes one");
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
