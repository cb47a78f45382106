#include "ProfileReaderTest.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "tarnel/InputRecord.h"

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

// The record of a profile's only input, which has these lines.
InputRecord recordOf(const std::string& lines) {
    const Profile profile = validProfile("[[input]]\nname = \"a\"\n" + lines);
    return orvane::tarnel::inputRecordOf(profile.definitions.inputs().at(0));
}

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
    EXPECT_EQ(recordOf(kInt + "element = 3").targetType, 3);
    const InputRecord element = recordOf(kFloat + "element = 5");
    EXPECT_EQ(element.targetType, 4);
    EXPECT_EQ(element.targetElement, 5);
    EXPECT_EQ(element.target, "sim/x");
    EXPECT_EQ(recordOf(kCommand).targetType, 6);
    EXPECT_EQ(recordOf(kCommand).target, "sim/c");
}

TEST(ProfileReaderTest, ReadsTheWaysOfScaling) {
    const auto floats = recordOf(kFloat + "scaling = { float_range = [-1, 0.5] }");
    EXPECT_EQ(floats.scaling, 2);
    EXPECT_EQ(floats.floatMinimum, -1.0F);
    EXPECT_EQ(floats.floatMaximum, 0.5F);
    const auto ints = recordOf(kFloat + "scaling = { int_range = [-20, 30] }");
    EXPECT_EQ(ints.scaling, 1);
    EXPECT_EQ(ints.intMinimum, -20);
    EXPECT_EQ(ints.intMaximum, 30);
    const auto datarefs = recordOf(kFloat + "scaling = { datarefs = [\"sim/min\", \"sim/max\"] }");
    EXPECT_EQ(datarefs.scaling, 3);
    EXPECT_EQ(datarefs.rangeType, 2);
    EXPECT_EQ(datarefs.rangeMinimum, "sim/min");
    EXPECT_EQ(datarefs.rangeMaximum, "sim/max");
    const auto elements =
        recordOf(kFloat + "scaling = { datarefs = [\"sim/min\", \"sim/max\"], element = 2 }");
    EXPECT_EQ(elements.rangeType, 4);
    EXPECT_EQ(elements.rangeElement, 2);
}

TEST(ProfileReaderTest, ReadsTheConditions) {
    EXPECT_EQ(recordOf(kFloat + "skip = { when_value = 1 }").condition, 1);
    EXPECT_EQ(recordOf(kFloat + "skip = { when_value = 0 }").condition, 2);
    const auto positive =
        recordOf(kFloat + "skip = { while_positive = \"sim/p\", type = \"int\" }");
    EXPECT_EQ(positive.condition, 3);
    EXPECT_EQ(positive.conditionDataref, "sim/p");
    EXPECT_EQ(positive.conditionType, 1);
    const auto zero =
        recordOf(kFloat + "skip = { while_zero = \"sim/z\", type = \"float\", element = 7 }");
    EXPECT_EQ(zero.condition, 4);
    EXPECT_EQ(zero.conditionType, 4);
    EXPECT_EQ(zero.conditionElement, 7);
}

TEST(ProfileReaderTest, ReadsFixedValuesAndTheTimingOfCommands) {
    EXPECT_EQ(recordOf(kFloat + "fixed = 0.25").fixedFloat, 0.25F);
    EXPECT_EQ(recordOf(kFloat + "fixed = 2").fixedFloat, 2.0F);
    EXPECT_EQ(recordOf(kInt + "fixed = -4").fixedInt, -4);
    EXPECT_TRUE(recordOf(kInt + "fixed = -4").usesFixed);
    EXPECT_EQ(recordOf(kCommand + "fixed = 1").fixedInt, 1);
    EXPECT_TRUE(recordOf(kCommand + "hold = true").isHeld);
    EXPECT_FALSE(recordOf(kCommand + "hold = false").isHeld);
    EXPECT_EQ(recordOf(kCommand + "repeat_ms = 250").repeatMs, 250);
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

// The description of the only input of a profile with these lines.
std::string wayOf(const std::string& lines) {
    return validProfile("[[input]]\nname = \"a\"\n" + lines).inputs.at(0).mapping;
}

TEST(ProfileReaderTest, DescribesWhatBecomesOfAValue) {
    EXPECT_EQ(wayOf(kFloat), "0..1, float");
    EXPECT_EQ(wayOf(kFloat + "element = 3"), "0..1, float[3]");
    EXPECT_EQ(wayOf(kFloat + "scaling = { float_range = [-1, 0.5] }"), "-1..0.5, float range");
    EXPECT_EQ(wayOf(kFloat + "scaling = { int_range = [0, 359] }"), "0..359, int range");
    EXPECT_EQ(wayOf(kFloat + "scaling = { datarefs = [\"sim/a/min\", \"sim/a/max\"] }"),
              "min..max, dataref range");
    EXPECT_EQ(wayOf(kFloat + "scaling = { datarefs = [\"kyr/most\", \"kyr/most\"] }"),
              "-most..most, dataref range");
    EXPECT_EQ(wayOf(kFloat + "element = 2\nscaling = { int_range = [0, 9] }"),
              "0..9, int range, float[2]");
    EXPECT_EQ(wayOf(kFloat + "fixed = 0.25\nskip = { when_value = 0 }"),
              "always 0.25, float, skips 0");
    EXPECT_EQ(wayOf(kInt), "unscaled, int");
    EXPECT_EQ(wayOf("dataref = \"kyr/x\"\ntype = \"int\"\nelement = 1"), "unscaled, own int[1]");
    EXPECT_EQ(wayOf(kInt + "skip = { while_positive = \"sim/p\", type = \"int\" }"),
              "unscaled, int, not while p > 0");
    EXPECT_EQ(wayOf(kCommand), "command");
    EXPECT_EQ(wayOf("command = \"kyr/c\"\nhold = true"), "own command, held");
    EXPECT_EQ(wayOf(kCommand + "repeat_ms = 200"), "command, at most every 200 ms");
}

TEST(ProfileReaderTest, DescribesInputsThatShareAName) {
    const Profile profile = validProfile(
        "[[input]]\nname = \"a\"\ndataref = \"sim/1\"\ntype = \"int\"\nelement = 2\n"
        "[[input]]\nname = \"a\"\ncommand = \"sim/c\"\n"
        "[[input]]\nname = \"b\"\ncommand = \"sim/d\"\n");
    EXPECT_EQ(profile.inputs[0].mapping, "unscaled, int[2]; command");
    EXPECT_EQ(profile.inputs[0].element, 2);
    EXPECT_FALSE(profile.inputs[0].isCommand);
    EXPECT_TRUE(profile.inputs[1].isCommand);
}

TEST(ProfileReaderTest, ReadsTheUnitsOfOutputs) {
    const Profile profile = validProfile("[[output]]\nname = \"i\"\n" + kInt +
                                         "unit = \"kt\"\n[[output]]\nname = \"j\"\n" + kInt);
    EXPECT_EQ(profile.outputs[0].unit, "kt");
    EXPECT_EQ(profile.outputs[1].unit, "");
    EXPECT_EQ(outputProblems(kInt + "unit = 3\n"), "p:5:8: \"unit\" is not a string in quotes\n");
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

} // namespace
