#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "tarnel/InputRecord.h"
#include "tools/orvane/drive/ProfileReader.h"

namespace {

using orvane::tarnel::InputRecord;
using orvane::tarnel::OutputType;
using orvane::tool::Problems;
using orvane::tool::Profile;
using orvane::tool::readProfile;
using orvane::tool::Steps;
using orvane::tool::Wave;
using orvane::tool::Waveform;

Profile validProfile(const std::string& text) {
    Problems problems;
    Profile profile = readProfile(text, problems);
    EXPECT_EQ(problemLines("p", problems), "");
    return profile;
}

std::string problemsOf(const std::string& text) {
    Problems problems;
    readProfile(text, problems);
    return problemLines("p", problems);
}

// The record of a profile's only input, which has these lines.
InputRecord recordOf(const std::string& lines) {
    const Profile profile = validProfile("[[input]]\nname = \"a\"\n" + lines);
    return orvane::tarnel::inputRecordOf(profile.definitions.inputs().at(0));
}

// What is wrong with an input that begins with these lines, from line 3 on.
std::string inputProblems(const std::string& lines) {
    return problemsOf("[[input]]\nname = \"a\"\n" + lines);
}

std::string outputProblems(const std::string& lines) {
    return problemsOf("[[output]]\nname = \"a\"\n" + lines);
}

constexpr const char* kFloat = "dataref = \"sim/x\"\ntype = \"float\"\n";
constexpr const char* kInt = "dataref = \"sim/x\"\ntype = \"int\"\n";
constexpr const char* kCommand = "command = \"sim/c\"\n";

TEST(ProfileReaderTest, ReadsWhereTheServerIsAndAtWhatPace) {
    const Profile profile = validProfile(
        "[connection]\nhost = \"192.0.2.7\"\nport = 48001\nrate = 12.5\n"
        "[[output]]\nname = \"x\"\ndataref = \"sim/x\"\ntype = \"int\"\n");
    EXPECT_EQ(profile.host, "192.0.2.7");
    EXPECT_EQ(profile.port, 48001);
    EXPECT_EQ(profile.rate, 12.5);
}

TEST(ProfileReaderTest, LeavesTheServerOpenAndExchangesFiftyTimesASecond) {
    const Profile profile =
        validProfile("[[output]]\nname = \"x\"\ndataref = \"sim/x\"\ntype = \"int\"\n");
    EXPECT_FALSE(profile.host);
    EXPECT_FALSE(profile.port);
    EXPECT_EQ(profile.rate, 50);
}

TEST(ProfileReaderTest, ReadsTargetsOfAllTypes) {
    EXPECT_EQ(recordOf(kInt).targetType, 1);
    EXPECT_EQ(recordOf(kFloat).targetType, 2);
    EXPECT_EQ(recordOf(std::string(kInt) + "element = 3").targetType, 3);
    const InputRecord element = recordOf(std::string(kFloat) + "element = 5");
    EXPECT_EQ(element.targetType, 4);
    EXPECT_EQ(element.targetElement, 5);
    EXPECT_EQ(element.target, "sim/x");
    EXPECT_EQ(recordOf(kCommand).targetType, 6);
    EXPECT_EQ(recordOf(kCommand).target, "sim/c");
}

TEST(ProfileReaderTest, ReadsTheWaysOfScaling) {
    const auto floats = recordOf(std::string(kFloat) + "scaling = { float_range = [-1, 0.5] }");
    EXPECT_EQ(floats.scaling, 2);
    EXPECT_EQ(floats.floatMinimum, -1.0F);
    EXPECT_EQ(floats.floatMaximum, 0.5F);
    const auto ints = recordOf(std::string(kFloat) + "scaling = { int_range = [-20, 30] }");
    EXPECT_EQ(ints.scaling, 1);
    EXPECT_EQ(ints.intMinimum, -20);
    EXPECT_EQ(ints.intMaximum, 30);
    const auto datarefs =
        recordOf(std::string(kFloat) + "scaling = { datarefs = [\"sim/min\", \"sim/max\"] }");
    EXPECT_EQ(datarefs.scaling, 3);
    EXPECT_EQ(datarefs.rangeType, 2);
    EXPECT_EQ(datarefs.rangeMinimum, "sim/min");
    EXPECT_EQ(datarefs.rangeMaximum, "sim/max");
    const auto elements = recordOf(
        std::string(kFloat) + "scaling = { datarefs = [\"sim/min\", \"sim/max\"], element = 2 }");
    EXPECT_EQ(elements.rangeType, 4);
    EXPECT_EQ(elements.rangeElement, 2);
}

TEST(ProfileReaderTest, ReadsTheConditions) {
    EXPECT_EQ(recordOf(std::string(kFloat) + "skip = { when_value = 1 }").condition, 1);
    EXPECT_EQ(recordOf(std::string(kFloat) + "skip = { when_value = 0 }").condition, 2);
    const auto positive =
        recordOf(std::string(kFloat) + "skip = { while_positive = \"sim/p\", type = \"int\" }");
    EXPECT_EQ(positive.condition, 3);
    EXPECT_EQ(positive.conditionDataref, "sim/p");
    EXPECT_EQ(positive.conditionType, 1);
    const auto zero = recordOf(std::string(kFloat) +
                               "skip = { while_zero = \"sim/z\", type = \"float\", element = 7 }");
    EXPECT_EQ(zero.condition, 4);
    EXPECT_EQ(zero.conditionType, 4);
    EXPECT_EQ(zero.conditionElement, 7);
}

TEST(ProfileReaderTest, ReadsFixedValuesAndTheTimingOfCommands) {
    EXPECT_EQ(recordOf(std::string(kFloat) + "fixed = 0.25").fixedFloat, 0.25F);
    EXPECT_EQ(recordOf(std::string(kFloat) + "fixed = 2").fixedFloat, 2.0F);
    EXPECT_EQ(recordOf(std::string(kInt) + "fixed = -4").fixedInt, -4);
    EXPECT_TRUE(recordOf(std::string(kInt) + "fixed = -4").usesFixed);
    EXPECT_EQ(recordOf(std::string(kCommand) + "fixed = 1").fixedInt, 1);
    EXPECT_TRUE(recordOf(std::string(kCommand) + "hold = true").isHeld);
    EXPECT_FALSE(recordOf(std::string(kCommand) + "hold = false").isHeld);
    EXPECT_EQ(recordOf(std::string(kCommand) + "repeat_ms = 250").repeatMs, 250);
}

TEST(ProfileReaderTest, NumbersNamesInTheirOrderAndKeepsThoseThatAreGiven) {
    const Profile profile = validProfile(
        "[[input]]\nname = \"a\"\ndataref = \"sim/1\"\ntype = \"float\"\n"
        "[[input]]\nname = \"b\"\ndataref = \"sim/2\"\ntype = \"float\"\naction = 2\n"
        "[[input]]\nname = \"a\"\ndataref = \"sim/3\"\ntype = \"float\"\n"
        "[[input]]\nname = \"c\"\ndataref = \"sim/4\"\ntype = \"float\"\n");
    ASSERT_EQ(profile.inputs.size(), 3U);
    EXPECT_EQ(profile.FindInput("a")->action, 1);
    EXPECT_EQ(profile.FindInput("b")->action, 2);
    EXPECT_EQ(profile.FindInput("c")->action, 3);
    EXPECT_EQ(profile.FindInput("d"), nullptr);
    ASSERT_EQ(profile.definitions.inputs().size(), 4U);
    EXPECT_EQ(profile.definitions.inputs()[2].action(), 1);
}

TEST(ProfileReaderTest, NeverGivesANumberWhoseCommandsRunTwice) {
    std::string text;
    for (int i = 0; i < 1002; ++i) {
        text += "[[input]]\nname = \"n" + std::to_string(i) + "\"\ncommand = \"sim/c\"\n";
    }
    const Profile profile = validProfile(text);
    EXPECT_EQ(profile.FindInput("n1000")->action, 1001);
    EXPECT_EQ(profile.FindInput("n1001")->action, 1006);
}

TEST(ProfileReaderTest, KnowsAxes) {
    const Profile profile = validProfile(
        "[[input]]\nname = \"axis\"\ndataref = \"sim/1\"\ntype = \"float\"\n"
        "[[input]]\nname = \"switch\"\ndataref = \"sim/2\"\ntype = \"int\"\n"
        "[[input]]\nname = \"fixed\"\ndataref = \"sim/3\"\ntype = \"float\"\nfixed = 1\n"
        "[[input]]\nname = \"held\"\ncommand = \"sim/c\"\nhold = true\n"
        "[[input]]\nname = \"both\"\ndataref = \"sim/1\"\ntype = \"float\"\n"
        "[[input]]\nname = \"both\"\ncommand = \"sim/e\"\n");
    EXPECT_TRUE(profile.FindInput("axis")->isAxis);
    for (const char* const name : {"switch", "fixed", "held", "both"}) {
        EXPECT_FALSE(profile.FindInput(name)->isAxis) << name;
    }
}

// How the only input of a profile with these lines is described.
std::string wayOf(const std::string& lines) {
    return validProfile("[[input]]\nname = \"a\"\n" + lines).inputs.at(0).way;
}

TEST(ProfileReaderTest, DescribesWhatBecomesOfAValue) {
    EXPECT_EQ(wayOf(kFloat), "0..1, float");
    EXPECT_EQ(wayOf(std::string(kFloat) + "element = 3"), "0..1, float[3]");
    EXPECT_EQ(wayOf(std::string(kFloat) + "scaling = { float_range = [-1, 0.5] }"),
              "-1..0.5, float range");
    EXPECT_EQ(wayOf(std::string(kFloat) + "scaling = { int_range = [0, 359] }"),
              "0..359, int range");
    EXPECT_EQ(
        wayOf(std::string(kFloat) + "scaling = { datarefs = [\"sim/a/min\", \"sim/a/max\"] }"),
        "min..max, dataref range");
    EXPECT_EQ(wayOf(std::string(kFloat) + "scaling = { datarefs = [\"kyr/most\", \"kyr/most\"] }"),
              "-most..most, dataref range");
    EXPECT_EQ(wayOf(std::string(kFloat) + "element = 2\nscaling = { int_range = [0, 9] }"),
              "0..9, int range, float[2]");
    EXPECT_EQ(wayOf(std::string(kFloat) + "fixed = 0.25\nskip = { when_value = 0 }"),
              "always 0.25, float, skips 0");
    EXPECT_EQ(wayOf(kInt), "as it is, int");
    EXPECT_EQ(wayOf("dataref = \"kyr/x\"\ntype = \"int\"\nelement = 1"), "as it is, own int[1]");
    EXPECT_EQ(wayOf(std::string(kInt) + "skip = { while_positive = \"sim/p\", type = \"int\" }"),
              "as it is, int, not while p > 0");
    EXPECT_EQ(wayOf(kCommand), "command");
    EXPECT_EQ(wayOf("command = \"kyr/c\"\nhold = true"), "own command, held");
    EXPECT_EQ(wayOf(std::string(kCommand) + "repeat_ms = 200"), "command, at most every 200 ms");
}

TEST(ProfileReaderTest, DescribesInputsThatShareAName) {
    const Profile profile = validProfile(
        "[[input]]\nname = \"a\"\ndataref = \"sim/1\"\ntype = \"int\"\nelement = 2\n"
        "[[input]]\nname = \"a\"\ncommand = \"sim/c\"\n"
        "[[input]]\nname = \"b\"\ncommand = \"sim/d\"\n");
    EXPECT_EQ(profile.inputs[0].way, "as it is, int[2]; command");
    EXPECT_EQ(profile.inputs[0].element, 2);
    EXPECT_FALSE(profile.inputs[0].isCommand);
    EXPECT_TRUE(profile.inputs[1].isCommand);
}

TEST(ProfileReaderTest, ReadsTheUnitsOfOutputs) {
    const Profile profile = validProfile("[[output]]\nname = \"i\"\n" + std::string(kInt) +
                                         "unit = \"kt\"\n[[output]]\nname = \"j\"\n" + kInt);
    EXPECT_EQ(profile.outputs[0].unit, "kt");
    EXPECT_EQ(profile.outputs[1].unit, "");
    EXPECT_EQ(outputProblems(std::string(kInt) + "unit = 3\n"),
              "p:5:8: \"unit\" is not a text in quotes\n");
}

TEST(ProfileReaderTest, ReadsOutputsOfAllTypes) {
    const Profile profile = validProfile(
        "[[output]]\nname = \"i\"\ndataref = \"sim/i\"\ntype = \"int\"\n"
        "[[output]]\nname = \"f\"\ndataref = \"sim/f\"\ntype = \"float\"\n"
        "[[output]]\nname = \"is\"\ndataref = \"sim/is\"\ntype = \"int\"\ncount = 4\n"
        "[[output]]\nname = \"fs\"\ndataref = \"sim/fs\"\ntype = \"float\"\ncount = 2\nfirst = 3\n"
        "[[output]]\nname = \"c\"\ncommand = \"kyr/c\"\n");
    const auto& outputs = profile.definitions.outputs();
    ASSERT_EQ(outputs.size(), 5U);
    EXPECT_EQ(outputs[0].type(), OutputType::Int);
    EXPECT_EQ(outputs[1].type(), OutputType::Float);
    EXPECT_EQ(outputs[2].type(), OutputType::IntArray);
    EXPECT_EQ(outputs[2].count(), 4);
    EXPECT_EQ(outputs[3].type(), OutputType::FloatArray);
    EXPECT_EQ(outputs[3].firstElement(), 3);
    EXPECT_EQ(outputs[4].type(), OutputType::Command);
    EXPECT_EQ(outputs[4].name(), "kyr/c");
    EXPECT_EQ(profile.outputs[4].name, "c");
    EXPECT_EQ(profile.outputs[4].id, outputs[4].id());
}

TEST(ProfileReaderTest, ReadsHowInputsMoveByThemselves) {
    const Profile profile = validProfile(
        "[[input]]\nname = \"axis\"\ndataref = \"sim/1\"\ntype = \"float\"\n"
        "wave = { form = \"triangle\", period = 8, range = [0.25, 0.5], phase = 0.75 }\n"
        "[[input]]\nname = \"plain\"\ndataref = \"sim/1\"\ntype = \"float\"\nwave = {}\n"
        "[[input]]\nname = \"switch\"\ncommand = \"sim/c\"\n"
        "steps = { values = [0, 1, -5], seconds = 0.5 }\n"
        "[[input]]\nname = \"still\"\ncommand = \"sim/d\"\n");
    const Wave axis = std::get<Wave>(profile.FindInput("axis")->motion.value());
    EXPECT_EQ(axis.waveform, Waveform::Triangle);
    EXPECT_EQ(axis.periodSeconds, 8);
    EXPECT_EQ(axis.centre, -0.25);
    EXPECT_EQ(axis.amplitude, 0.25);
    EXPECT_EQ(axis.phase, 0.75);
    const Wave plain = std::get<Wave>(profile.FindInput("plain")->motion.value());
    EXPECT_EQ(plain.waveform, Waveform::Sine);
    EXPECT_EQ(plain.periodSeconds, 4);
    EXPECT_EQ(plain.centre, 0);
    EXPECT_EQ(plain.amplitude, 1);
    const Steps steps = std::get<Steps>(profile.FindInput("switch")->motion.value());
    EXPECT_EQ(steps.values, (std::vector<std::int32_t>{0, 1, -5}));
    EXPECT_EQ(steps.seconds, 0.5);
    EXPECT_FALSE(profile.FindInput("still")->motion);
}

TEST(ProfileReaderTest, ReportsMotionsThatAreNone) {
    EXPECT_EQ(inputProblems(std::string(kFloat) + "wave = { form = \"saw\", period = 0 }\n"),
              "p:5:17: \"form\" is \"saw\"; it can be sine or triangle or square or sweep\n"
              "p:5:33: \"period\" is not a number from 0.01 to 86400\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "wave = { range = [0, 1.5], speed = 1 }\n"),
              "p:5:18: \"range\" goes beyond 0 to 1, the ends of the axis\n"
              "p:5:28: there is no key \"speed\" here\n");
    EXPECT_EQ(inputProblems(std::string(kInt) + "wave = {}\n"),
              "p:5:8: \"wave\" is for floats that are not fixed\n");
    EXPECT_EQ(inputProblems(std::string(kInt) + "steps = {}\n"), "p:5:9: \"values\" is missing\n");
    EXPECT_EQ(inputProblems(std::string(kInt) + "steps = { values = [] }\n"),
              "p:5:20: \"values\" is not a list of whole numbers\n");
    EXPECT_EQ(inputProblems(std::string(kInt) + "steps = { values = [1, 0.5] }\n"),
              "p:5:20: \"values\" has an element that is not a whole number from -2147483648 to "
              "2147483647\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "wave = {}\nsteps = { values = [1] }\n"),
              "p:6:9: \"wave\" and \"steps\" exclude each other\n");
    EXPECT_EQ(
        problemsOf("[[input]]\nname = \"a\"\ncommand = \"sim/1\"\nsteps = { values = [1] }\n"
                   "[[input]]\nname = \"a\"\ncommand = \"sim/2\"\nsteps = { values = [1] }\n"),
        "p:5:1: \"a\" moves already\n");
}

TEST(ProfileReaderTest, ReportsEverythingThatIsWrongInTheOrderOfItsPlace) {
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
              "p:1:1: there is no key \"speling\" here\n"
              "p:3:8: \"host\" is empty\n"
              "p:4:8: \"port\" is not a whole number from 1 to 65535\n"
              "p:5:8: \"rate\" is not a number from 0.01 to 1000\n"
              "p:9:8: \"type\" is \"double\"; it can be float or int\n"
              "p:10:11: \"element\" is not a whole number from 0 to 2147483647\n"
              "p:13:11: the command sim/nope cannot be observed: only those under kyr/ can\n");
}

TEST(ProfileReaderTest, ReportsWhatIsNoTomlAtItsPlace) {
    EXPECT_TRUE(problemsOf("[[input]]\nname = \n").starts_with("p:2:8: "))
        << problemsOf("[[input]]\nname = \n");
    EXPECT_TRUE(problemsOf("a = 1\na = 2\n").starts_with("p:2:")) << problemsOf("a = 1\na = 2\n");
}

TEST(ProfileReaderTest, ReportsAProfileWithNothingInIt) {
    EXPECT_EQ(problemsOf(""), "p:1:1: the profile has neither inputs nor outputs\n");
}

TEST(ProfileReaderTest, ReportsTablesThatAreNone) {
    EXPECT_EQ(problemsOf("input = 3\noutput = [1]\nconnection = \"x\"\n"),
              "p:1:9: \"input\" is not a list: write [[input]]\n"
              "p:2:11: an element of \"output\" is no table\n"
              "p:3:14: \"connection\" is not a table\n");
    EXPECT_EQ(problemsOf("[input]\nname = \"a\"\n"),
              "p:1:1: \"input\" is not a list: write [[input]]\n");
}

TEST(ProfileReaderTest, ReportsNamesThatAreMissingOrNotPossible) {
    EXPECT_EQ(problemsOf("[[input]]\n" + std::string(kFloat)), "p:1:1: \"name\" is missing\n");
    EXPECT_EQ(problemsOf("[[input]]\nname = 4\n" + std::string(kFloat)),
              "p:2:8: \"name\" is not a text in quotes\n");
    EXPECT_EQ(problemsOf("[[input]]\nname = \"\"\n" + std::string(kFloat)),
              "p:2:8: \"\" cannot be a name\n");
    EXPECT_EQ(problemsOf("[[input]]\nname = \"time\"\n" + std::string(kFloat)),
              "p:2:8: \"time\" cannot be a name\n");
    EXPECT_EQ(problemsOf("[[output]]\nname = \"aircraft_id\"\n" + std::string(kFloat)),
              "p:2:8: \"aircraft_id\" cannot be a name\n");
    EXPECT_EQ(problemsOf("[[input]]\nname = \"a\\nb\"\n" + std::string(kFloat)),
              "p:2:8: a name has no control characters\n");
}

TEST(ProfileReaderTest, ReportsTargetsThatAreMissingOrTwo) {
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
              "p:3:11: the name kyr/ has a zero byte in it\n");
}

TEST(ProfileReaderTest, ReportsKeysOfTheOtherKindOfTarget) {
    EXPECT_EQ(inputProblems(std::string(kFloat) + "hold = true\nrepeat_ms = 2\n"),
              "p:5:8: \"hold\" is for commands\n"
              "p:6:13: \"repeat_ms\" is for commands\n");
    EXPECT_EQ(inputProblems(std::string(kCommand) +
                            "type = \"int\"\nelement = 1\nscaling = { int_range = [1, 2] }\n"),
              "p:4:8: \"type\" is for datarefs\n"
              "p:5:11: \"element\" is for datarefs\n"
              "p:6:11: \"scaling\" is for datarefs\n");
    EXPECT_EQ(outputProblems("command = \"kyr/c\"\ncount = 2\n"),
              "p:4:9: \"count\" is for datarefs\n");
}

TEST(ProfileReaderTest, ReportsScalingThatHasNoEffect) {
    const std::string scaling = "scaling = { float_range = [0, 1] }\n";
    EXPECT_EQ(inputProblems(kInt + scaling), "p:5:11: \"scaling\" is for floats\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "fixed = 1\n" + scaling),
              "p:6:11: \"scaling\" has no effect on a fixed value\n");
}

TEST(ProfileReaderTest, ReportsRangesThatAreNone) {
    EXPECT_EQ(
        inputProblems(std::string(kFloat) + "scaling = { float_range = [0, \"x\"] }\n"),
        "p:5:27: \"float_range\" has an element that is not a number that a float can hold\n");
    EXPECT_EQ(
        inputProblems(std::string(kFloat) + "scaling = { float_range = [0, 1e39] }\n"),
        "p:5:27: \"float_range\" has an element that is not a number that a float can hold\n");
    EXPECT_EQ(
        inputProblems(std::string(kFloat) + "scaling = { float_range = [nan, 1] }\n"),
        "p:5:27: \"float_range\" has an element that is not a number that a float can hold\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "scaling = { int_range = [0, 2147483648] }\n"),
              "p:5:25: \"int_range\" has an element that is not a whole number from -2147483648 to "
              "2147483647\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "scaling = { datarefs = [\"a\"] }\n"),
              "p:5:24: \"datarefs\" is not a list of two\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "scaling = {}\n"),
              "p:5:11: one of \"float_range\", \"int_range\", \"datarefs\" is missing\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "scaling = [1, 2]\n"),
              "p:5:11: \"scaling\" is not a table\n");
    EXPECT_EQ(
        inputProblems(std::string(kFloat) + "scaling = { float_range = [0, 1], element = 1 }\n"),
        "p:5:35: there is no key \"element\" here\n");
}

TEST(ProfileReaderTest, ReportsConditionsThatAreNone) {
    EXPECT_EQ(inputProblems(std::string(kFloat) + "skip = { when_value = 2 }\n"),
              "p:5:23: \"when_value\" is not a whole number from 0 to 1\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "skip = { while_zero = \"sim/z\" }\n"),
              "p:5:8: \"type\" is missing: \"float\" or \"int\"\n");
    EXPECT_EQ(
        inputProblems(std::string(kFloat) + "skip = { when_value = 1, while_zero = \"z\" }\n"),
        "p:5:39: \"when_value\" and \"while_zero\" exclude each other\n");
}

TEST(ProfileReaderTest, ReportsCommandsThatWouldStayDown) {
    EXPECT_EQ(inputProblems(std::string(kCommand) + "hold = true\nfixed = 1\n"),
              "p:5:9: \"fixed\" would leave a held command down, or never press it\n");
    EXPECT_EQ(inputProblems(std::string(kCommand) + "hold = true\nrepeat_ms = 5\n"),
              "p:5:13: \"repeat_ms\" is for commands that are not held\n");
    EXPECT_EQ(inputProblems(std::string(kCommand) + "hold = 1\n"),
              "p:4:8: \"hold\" is neither true nor false\n");
    EXPECT_EQ(inputProblems(std::string(kCommand) + "repeat_ms = 0\n"),
              "p:4:13: \"repeat_ms\" is not a whole number from 1 to 2147483647\n");
}

TEST(ProfileReaderTest, ReportsFixedValuesOfTheWrongType) {
    EXPECT_EQ(inputProblems(std::string(kInt) + "fixed = 0.5\n"),
              "p:5:9: \"fixed\" is not a whole number from -2147483648 to 2147483647\n");
    EXPECT_EQ(inputProblems(std::string(kFloat) + "fixed = inf\n"),
              "p:5:9: \"fixed\" is not a number that a float can hold\n");
    // Of an element of an int array the server sets nothing else.
    EXPECT_TRUE(
        inputProblems(std::string(kInt) + "element = 0\nfixed = 2\n").starts_with("p:6:9: "));
}

TEST(ProfileReaderTest, ReportsNumbersAndTargetsThatAreTaken) {
    EXPECT_EQ(problemsOf("[[input]]\nname = \"a\"\ncommand = \"sim/1\"\naction = 5\n"
                         "[[input]]\nname = \"b\"\ncommand = \"sim/2\"\naction = 5\n"
                         "[[input]]\nname = \"a\"\ncommand = \"sim/3\"\naction = 6\n"
                         "[[input]]\nname = \"a\"\ncommand = \"sim/1\"\n"
                         "[[input]]\nname = \"c\"\ncommand = \"sim/1\"\naction = -1\n"),
              "p:8:10: action 5 is \"a\" already\n"
              "p:12:10: \"a\" is action 5 already\n"
              "p:13:1: \"a\" drives sim/1 already\n"
              "p:19:10: \"action\" is not a whole number from 0 to 2147483647\n");
}

TEST(ProfileReaderTest, ReportsOutputsThatCannotBe) {
    EXPECT_EQ(outputProblems("dataref = \"sim/x\"\ntype = \"int\"\ncount = 0\n"),
              "p:5:9: \"count\" is not a whole number from 1 to 1000000\n");
    EXPECT_EQ(outputProblems("dataref = \"sim/x\"\ntype = \"int\"\nfirst = 2\n"),
              "p:5:9: \"first\" needs \"count\", the number of elements from there\n");
    EXPECT_EQ(outputProblems("dataref = \"sim/x\"\ntype = \"int\"\nelement = 2\n"),
              "p:5:1: there is no key \"element\" here\n");
    EXPECT_EQ(problemsOf("[[output]]\nname = \"o\"\ncommand = \"kyr/1\"\n"
                         "[[output]]\nname = \"o\"\ncommand = \"kyr/2\"\n"),
              "p:5:8: there is an output \"o\" already\n");
    EXPECT_TRUE(problemsOf("[[output]]\nname = \"o\"\ncommand = \"kyr/1\"\n"
                           "[[output]]\nname = \"p\"\ncommand = \"kyr/1\"\n")
                    .starts_with("p:6:11: "));
}

TEST(ProfileReaderTest, ReportsAnswersThatNoSimulatorWouldSurvive) {
    std::string text;
    for (int i = 0; i < 17; ++i) {
        text += "[[output]]\nname = \"o" + std::to_string(i) +
                "\"\ndataref = \"sim/x\"\ntype = \"int\"\ncount = 1000000\n";
    }
    EXPECT_EQ(problemsOf(text),
              "p:81:1: the answers get too large with this output: more than 64 MiB\n");
}

} // namespace
