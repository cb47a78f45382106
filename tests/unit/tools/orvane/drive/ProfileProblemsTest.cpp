#include <string>

#include <gtest/gtest.h>

#include "ProfileReaderTest.h"

namespace {

// The problems of an input with these lines, from line 3 on.
std::string inputProblems(const std::string& lines) {
    return problemsOf("[[input]]\nname = \"a\"\n" + lines);
}

TEST(ProfileReaderTest, ReportsInvalidMotions) {
    EXPECT_EQ(inputProblems(kFloat + "wave = { form = \"saw\", period = 0 }\n"),
              "p:5:17: \"form\" is \"saw\"; it can be sine or triangle or square or sweep\n"
              "p:5:33: \"period\" is not a number from 0.01 to 86400\n");
    EXPECT_EQ(inputProblems(kFloat + "wave = { range = [0, 1.5], speed = 1 }\n"),
              "p:5:18: \"range\" is not within 0 to 1\n"
              "p:5:28: unknown key \"speed\"\n");
    EXPECT_EQ(inputProblems(kInt + "wave = {}\n"),
              "p:5:8: \"wave\" is for floats that are not fixed\n");
    EXPECT_EQ(inputProblems(kInt + "steps = {}\n"), "p:5:9: \"values\" is missing\n");
    EXPECT_EQ(inputProblems(kInt + "steps = { values = [] }\n"),
              "p:5:20: \"values\" is not a list of whole numbers\n");
    EXPECT_EQ(inputProblems(kInt + "steps = { values = [1, 0.5] }\n"),
              "p:5:20: \"values\" has an element that is not a whole number from -2147483648 to "
              "2147483647\n");
    EXPECT_EQ(inputProblems(kFloat + "wave = {}\nsteps = { values = [1] }\n"),
              "p:6:9: \"wave\" and \"steps\" exclude each other\n");
    EXPECT_EQ(
        problemsOf("[[input]]\nname = \"a\"\ncommand = \"sim/1\"\nsteps = { values = [1] }\n"
                   "[[input]]\nname = \"a\"\ncommand = \"sim/2\"\nsteps = { values = [1] }\n"),
        "p:5:1: \"a\" already moves\n");
}

TEST(ProfileReaderTest, ReportsEveryProblemInTheOrderOfTheFile) {
    EXPECT_EQ(problemsOf("speling = 1\n"
                         "[connection]\n"
                         "host = \"\"\n"
                         "port = 70000\n"
                         "rate = \"fast\"\n"
                         "[[input]]\n"
                         "name = \"a\"\n"
                         "dataref = \"sim/x\"\n"
                         "type = \"double\"\n"
                         "element = -1\n"
                         "[[output]]\n"
                         "name = \"o\"\n"
                         "command = \"sim/nope\"\n"),
              "p:1:1: unknown key \"speling\"\n"
              "p:3:8: \"host\" is empty\n"
              "p:4:8: \"port\" is not a whole number from 1 to 65535\n"
              "p:5:8: \"rate\" is not a number from 0.01 to 1000\n"
              "p:9:8: \"type\" is \"double\"; it can be float or int\n"
              "p:10:11: \"element\" is not a whole number from 0 to 2147483647\n"
              "p:13:11: the command sim/nope cannot be observed: only those under kyr/ can\n");
}

TEST(ProfileReaderTest, ReportsInvalidTomlWithItsPlace) {
    EXPECT_TRUE(problemsOf("[[input]]\nname = \n").starts_with("p:2:8: "))
        << problemsOf("[[input]]\nname = \n");
    EXPECT_TRUE(problemsOf("a = 1\na = 2\n").starts_with("p:2:")) << problemsOf("a = 1\na = 2\n");
}

TEST(ProfileReaderTest, ReportsAProfileWithNothingInIt) {
    EXPECT_EQ(problemsOf(""), "p:1:1: the profile has neither inputs nor outputs\n");
}

TEST(ProfileReaderTest, ReportsInvalidTables) {
    EXPECT_EQ(problemsOf("input = 3\noutput = [1]\nconnection = \"x\"\n"),
              "p:1:9: \"input\" is not a list: write [[input]]\n"
              "p:2:11: an element of \"output\" is not a table\n"
              "p:3:14: \"connection\" is not a table\n");
    EXPECT_EQ(problemsOf("[input]\nname = \"a\"\n"),
              "p:1:1: \"input\" is not a list: write [[input]]\n");
}

TEST(ProfileReaderTest, ReportsMissingAndInvalidNames) {
    EXPECT_EQ(problemsOf("[[input]]\n" + kFloat), "p:1:1: \"name\" is missing\n");
    EXPECT_EQ(problemsOf("[[input]]\nname = 4\n" + kFloat),
              "p:2:8: \"name\" is not a string in quotes\n");
    EXPECT_EQ(problemsOf("[[input]]\nname = \"\"\n" + kFloat), "p:2:8: \"\" cannot be a name\n");
    EXPECT_EQ(problemsOf("[[input]]\nname = \"time\"\n" + kFloat),
              "p:2:8: \"time\" cannot be a name\n");
    EXPECT_EQ(problemsOf("[[output]]\nname = \"aircraft_id\"\n" + kFloat),
              "p:2:8: \"aircraft_id\" cannot be a name\n");
    EXPECT_EQ(problemsOf("[[input]]\nname = \"a\\nb\"\n" + kFloat),
              "p:2:8: a name cannot contain control characters\n");
}

TEST(ProfileReaderTest, ReportsMissingAndDoubleTargets) {
    EXPECT_EQ(inputProblems("type = \"int\"\n"),
              "p:1:1: one of \"dataref\", \"command\" is missing\n");
    EXPECT_EQ(inputProblems("dataref = \"sim/x\"\ncommand = \"sim/c\"\n"),
              "p:4:11: \"dataref\" and \"command\" exclude each other\n");
    EXPECT_EQ(inputProblems("dataref = \"sim/x\"\n"),
              "p:1:1: \"type\" is missing: \"float\" or \"int\"\n");
    EXPECT_EQ(outputProblems("dataref = \"sim/x\"\n"),
              "p:1:1: \"type\" is missing: \"float\" or \"int\"\n");
}

TEST(ProfileReaderTest, ReportsNamesThatTheServerWouldCut) {
    const std::string longName(100, 'n');
    EXPECT_EQ(inputProblems("type = \"int\"\ndataref = \"" + longName + "\"\n"),
              "p:4:11: the name " + longName + " has 100 bytes; at most 99 are allowed\n");
    EXPECT_EQ(inputProblems("command = \"\"\n"), "p:3:11: a name is empty\n");
    EXPECT_EQ(outputProblems("command = \"kyr/\\u0000\"\n"),
              "p:3:11: the name kyr/ contains a zero byte\n");
}

TEST(ProfileReaderTest, ReportsKeysOfTheOtherKindOfTarget) {
    EXPECT_EQ(inputProblems(kFloat + "hold = true\nrepeat_ms = 2\n"),
              "p:5:8: \"hold\" is for commands\n"
              "p:6:13: \"repeat_ms\" is for commands\n");
    EXPECT_EQ(
        inputProblems(kCommand + "type = \"int\"\nelement = 1\nscaling = { int_range = [1, 2] }\n"),
        "p:4:8: \"type\" is for datarefs\n"
        "p:5:11: \"element\" is for datarefs\n"
        "p:6:11: \"scaling\" is for datarefs\n");
    EXPECT_EQ(outputProblems("command = \"kyr/c\"\ncount = 2\n"),
              "p:4:9: \"count\" is for datarefs\n");
}

TEST(ProfileReaderTest, ReportsScalingThatHasNoEffect) {
    const std::string scaling = "scaling = { float_range = [0, 1] }\n";
    EXPECT_EQ(inputProblems(kInt + scaling), "p:5:11: \"scaling\" is for floats\n");
    EXPECT_EQ(inputProblems(kFloat + "fixed = 1\n" + scaling),
              "p:6:11: \"scaling\" has no effect on a fixed value\n");
}

TEST(ProfileReaderTest, ReportsInvalidRanges) {
    EXPECT_EQ(
        inputProblems(kFloat + "scaling = { float_range = [0, \"x\"] }\n"),
        "p:5:27: \"float_range\" has an element that is not a number that a float can hold\n");
    EXPECT_EQ(
        inputProblems(kFloat + "scaling = { float_range = [0, 1e39] }\n"),
        "p:5:27: \"float_range\" has an element that is not a number that a float can hold\n");
    EXPECT_EQ(
        inputProblems(kFloat + "scaling = { float_range = [nan, 1] }\n"),
        "p:5:27: \"float_range\" has an element that is not a number that a float can hold\n");
    EXPECT_EQ(inputProblems(kFloat + "scaling = { int_range = [0, 2147483648] }\n"),
              "p:5:25: \"int_range\" has an element that is not a whole number from -2147483648 to "
              "2147483647\n");
    EXPECT_EQ(inputProblems(kFloat + "scaling = { datarefs = [\"a\"] }\n"),
              "p:5:24: \"datarefs\" is not a list of two\n");
    EXPECT_EQ(inputProblems(kFloat + "scaling = {}\n"),
              "p:5:11: one of \"float_range\", \"int_range\", \"datarefs\" is missing\n");
    EXPECT_EQ(inputProblems(kFloat + "scaling = [1, 2]\n"), "p:5:11: \"scaling\" is not a table\n");
    EXPECT_EQ(inputProblems(kFloat + "scaling = { float_range = [0, 1], element = 1 }\n"),
              "p:5:35: unknown key \"element\"\n");
}

TEST(ProfileReaderTest, ReportsInvalidConditions) {
    EXPECT_EQ(inputProblems(kFloat + "skip = { when_value = 2 }\n"),
              "p:5:23: \"when_value\" is not a whole number from 0 to 1\n");
    EXPECT_EQ(inputProblems(kFloat + "skip = { while_zero = \"sim/z\" }\n"),
              "p:5:8: \"type\" is missing: \"float\" or \"int\"\n");
    EXPECT_EQ(inputProblems(kFloat + "skip = { when_value = 1, while_zero = \"z\" }\n"),
              "p:5:39: \"when_value\" and \"while_zero\" exclude each other\n");
}

TEST(ProfileReaderTest, ReportsCommandsThatWouldStayDown) {
    EXPECT_EQ(inputProblems(kCommand + "hold = true\nfixed = 1\n"),
              "p:5:9: \"fixed\" would leave a held command down, or never press it\n");
    EXPECT_EQ(inputProblems(kCommand + "hold = true\nrepeat_ms = 5\n"),
              "p:5:13: \"repeat_ms\" is for commands that are not held\n");
    EXPECT_EQ(inputProblems(kCommand + "hold = 1\n"),
              "p:4:8: \"hold\" is neither true nor false\n");
    EXPECT_EQ(inputProblems(kCommand + "repeat_ms = 0\n"),
              "p:4:13: \"repeat_ms\" is not a whole number from 1 to 2147483647\n");
}

TEST(ProfileReaderTest, ReportsFixedValuesOfTheWrongType) {
    EXPECT_EQ(inputProblems(kInt + "fixed = 0.5\n"),
              "p:5:9: \"fixed\" is not a whole number from -2147483648 to 2147483647\n");
    EXPECT_EQ(inputProblems(kFloat + "fixed = inf\n"),
              "p:5:9: \"fixed\" is not a number that a float can hold\n");
    // The server sets an element of an int array to nothing else.
    EXPECT_TRUE(inputProblems(kInt + "element = 0\nfixed = 2\n").starts_with("p:6:9: "));
}

TEST(ProfileReaderTest, ReportsNumbersAndTargetsInUse) {
    EXPECT_EQ(problemsOf("[[input]]\nname = \"a\"\ncommand = \"sim/1\"\naction = 5\n"
                         "[[input]]\nname = \"b\"\ncommand = \"sim/2\"\naction = 5\n"
                         "[[input]]\nname = \"a\"\ncommand = \"sim/3\"\naction = 6\n"
                         "[[input]]\nname = \"a\"\ncommand = \"sim/1\"\n"
                         "[[input]]\nname = \"c\"\ncommand = \"sim/1\"\naction = -1\n"),
              "p:8:10: action 5 already belongs to \"a\"\n"
              "p:12:10: \"a\" already has action 5\n"
              "p:13:1: \"a\" already drives sim/1\n"
              "p:19:10: \"action\" is not a whole number from 0 to 2147483647\n");
}

TEST(ProfileReaderTest, ReportsImpossibleOutputs) {
    EXPECT_EQ(outputProblems("dataref = \"sim/x\"\ntype = \"int\"\ncount = 0\n"),
              "p:5:9: \"count\" is not a whole number from 1 to 1000000\n");
    EXPECT_EQ(outputProblems("dataref = \"sim/x\"\ntype = \"int\"\nfirst = 2\n"),
              "p:5:9: \"first\" needs \"count\", the number of elements from there\n");
    EXPECT_EQ(outputProblems("dataref = \"sim/x\"\ntype = \"int\"\nelement = 2\n"),
              "p:5:1: unknown key \"element\"\n");
    EXPECT_EQ(problemsOf("[[output]]\nname = \"o\"\ncommand = \"kyr/1\"\n"
                         "[[output]]\nname = \"o\"\ncommand = \"kyr/2\"\n"),
              "p:5:8: there is already an output \"o\"\n");
    EXPECT_TRUE(problemsOf("[[output]]\nname = \"o\"\ncommand = \"kyr/1\"\n"
                           "[[output]]\nname = \"p\"\ncommand = \"kyr/1\"\n")
                    .starts_with("p:6:11: "));
}

TEST(ProfileReaderTest, ReportsAnswersThatWouldBeTooLarge) {
    std::string text;
    for (int i = 0; i < 17; ++i) {
        text += "[[output]]\nname = \"o" + std::to_string(i) +
                "\"\ndataref = \"sim/x\"\ntype = \"int\"\ncount = 1000000\n";
    }
    EXPECT_EQ(problemsOf(text), "p:81:1: with this output the answers exceed 64 MiB\n");
}

} // namespace
