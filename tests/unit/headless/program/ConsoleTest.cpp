#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/scenario/Statement.h"
#include "scenario/FlightTest.h"

using headless::replyTo;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

class ConsoleTest : public FlightTest {
protected:
    std::string say(const std::string& line) { return replyTo(line, flight); }
};

TEST_F(ConsoleTest, GetsAndSetsScalarsArraysAndText) {
    EXPECT_EQ(say("set sim/cockpit2/controls/yoke_pitch_ratio -0.25"), "ok");
    EXPECT_EQ(say("get sim/cockpit2/controls/yoke_pitch_ratio"),
              "sim/cockpit2/controls/yoke_pitch_ratio = -0.25");
    EXPECT_EQ(say("set sim/flightmodel/position/q 1,0.5"), "ok");
    EXPECT_EQ(say("get sim/flightmodel/position/q"), "sim/flightmodel/position/q = 1,0.5,0,0");
    EXPECT_EQ(say("set sim/aircraft/view/acf_tailnum OE ABC"), "ok");
    EXPECT_EQ(say("get sim/aircraft/view/acf_tailnum"), "sim/aircraft/view/acf_tailnum = OE ABC");
}

TEST_F(ConsoleTest, GetsWhatThePluginPublishes) {
    EXPECT_EQ(say("get fake/counter"), "fake/counter = 0");
    say("step 3");
    EXPECT_EQ(say("get fake/counter"), "fake/counter = 3");
}

TEST_F(ConsoleTest, UnknownNamesAndBadValuesAreErrors) {
    EXPECT_EQ(say("get sim/none"), "error: no such dataref: sim/none");
    EXPECT_EQ(say("set sim/none 1"), "error: no such dataref: sim/none");
    EXPECT_EQ(say("set sim/time/paused x"), "error: \"x\" is not a value of this dataref");
    EXPECT_EQ(say("events sim/none"), "error: no such command: sim/none");
}

TEST_F(ConsoleTest, UnknownStatementsAreErrors) {
    EXPECT_EQ(say("fly"), "error: unknown statement \"fly\"; see help");
    EXPECT_EQ(say(""), "error: unknown statement \"\"; see help");
}

TEST_F(ConsoleTest, ASwallowedCommandIsPressedButNotPassedOn) {
    say("command once fake/command");
    EXPECT_EQ(say("events fake/command"),
              "fake/command begin=0 continue=0 end=0 "
              "pressed-begin=1 pressed-continue=0 pressed-end=1");
}

TEST_F(ConsoleTest, StepsOnlyWhilePaused) {
    EXPECT_EQ(say("step 0"), "frame 0");
    EXPECT_EQ(say("step 100"), "frame 100");
    EXPECT_EQ(say("frames"), "frames 100");
    EXPECT_EQ(say("run"), "ok");
    EXPECT_FALSE(session.IsPaused());
    EXPECT_EQ(say("step 1"), "error: frames are stepped while paused");
    EXPECT_EQ(say("pause"), "ok");
    EXPECT_TRUE(session.IsPaused());
    EXPECT_EQ(say("step -1"), "error: the number of frames is negative");
}

TEST_F(ConsoleTest, AnInterruptEndsALongStep) {
    interrupted = true;
    EXPECT_EQ(say("step 1000000000000"), "frame 0");
}

TEST_F(ConsoleTest, LoadsAndUnloadsAircraftAndSendsMessages) {
    EXPECT_EQ(say("aircraft load My Own, twin"), "ok");
    EXPECT_EQ(say("get sim/aircraft/view/acf_descrip"),
              "sim/aircraft/view/acf_descrip = My Own, twin");
    EXPECT_EQ(say("aircraft unload"), "ok");
    EXPECT_EQ(say("message 103 7"), "ok");
    EXPECT_THAT(folder.Read("Log.txt"),
                HasSubstr("message 102 0 from 0\nmessage 108 0 from 0\nmessage 106 0 from "
                          "0\nmessage 103 7 from 0\n"));
}

TEST_F(ConsoleTest, TakesThePluginThroughItsLife) {
    EXPECT_EQ(say("disable"), "ok");
    EXPECT_EQ(say("enable"), "ok");
    EXPECT_THAT(say("enable"), StartsWith("error: "));
    EXPECT_EQ(say("stop"), "ok");
    EXPECT_EQ(say("get fake/counter"), "error: no such dataref: fake/counter");
    EXPECT_EQ(say("step 5"), "frame 5");
    EXPECT_EQ(say("start"), "ok");
    EXPECT_THAT(say("start"), StartsWith("error: "));
    EXPECT_EQ(say("reload"), "ok");
    EXPECT_EQ(say("get fake/counter"), "fake/counter = 0");
}

TEST_F(ConsoleTest, PrintsMemoryAndDescriptors) {
    EXPECT_THAT(say("rss"), MatchesRegex("rss [1-9][0-9]+"));
    const std::string before = say("fds");
    EXPECT_THAT(before, MatchesRegex("fds [1-9][0-9]*"));
    EXPECT_EQ(say("fds"), before);
}

TEST_F(ConsoleTest, PrintsTheWorstFrameInWholeMicroseconds) {
    EXPECT_EQ(say("worst"), "worst 0");
    say("step 100");
    const auto worst = session.Statistics().Worst();
    ASSERT_GT(worst.count(), 0);
    EXPECT_EQ(say("worst"), "worst " + std::to_string(worst.count() / 1000));
}

TEST_F(ConsoleTest, CountsTheCommandHandlersOfThePlugin) {
    const std::string before = say("handlers");
    EXPECT_THAT(before, MatchesRegex("handlers [1-9][0-9]*"));
    EXPECT_EQ(say("reload"), "ok");
    EXPECT_EQ(say("handlers"), before);
    EXPECT_EQ(say("stop"), "ok");
    EXPECT_NE(say("handlers"), before);
}

TEST_F(ConsoleTest, AnExpectationThatIsNotMetIsAnError) {
    EXPECT_EQ(say("expect fake/counter == 0"), "ok");
    EXPECT_EQ(say("expect fake/counter == 1"), "error: expected fake/counter == 1, got 0");
}

TEST_F(ConsoleTest, AnswersACommentAsWell) {
    EXPECT_EQ(say("# a remark"), "ok");
    EXPECT_EQ(say("step 2 # two"), "frame 2");
}

TEST_F(ConsoleTest, HelpIsOneLineWithEveryStatement) {
    const std::string help = say("help");
    EXPECT_THAT(help, StartsWith("ok: get NAME; set NAME VALUE"));
    EXPECT_THAT(help, HasSubstr("; quit"));
    EXPECT_EQ(help.find('\n'), std::string::npos);
    EXPECT_EQ(say("help press"), "press COMMAND: Begins and ends a command.");
    EXPECT_EQ(say("help fly"), "error: unknown statement \"fly\"; see help");
}

TEST_F(ConsoleTest, QuitIsAskedForWithAStatus) {
    EXPECT_EQ(flight.QuitStatus(), std::nullopt);
    EXPECT_EQ(say("quit"), "ok");
    EXPECT_EQ(flight.QuitStatus(), 0);
    EXPECT_EQ(say("quit 7"), "ok");
    EXPECT_EQ(flight.QuitStatus(), 7);
    EXPECT_EQ(say("quit 256"), "error: an exit status is 0 to 255");
}
