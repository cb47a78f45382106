#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "HeadlessSimRun.h"
#include "support/Text.h"

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

class HeadlessSimTest : public HeadlessSimRun {};

TEST_F(HeadlessSimTest, FliesTheGivenDurationAndSumsUp) {
    EXPECT_EQ(run(FAKE_PLUGIN " --duration 0.5 --hz 100"), 0);
    EXPECT_THAT(output,
                MatchesRegex("frames 50, plugin time per frame: worst [0-9.]+ us, mean [0-9.]+ "
                             "us\n"));
    EXPECT_EQ(errors, "");
    EXPECT_EQ(folder.Read("Log.txt"),
              "start\nenable\nmessage 102 0 from 0\nmessage 108 0 from 0\nmessage 103 0 from "
              "0\nmessage 104 0 from 0\ndisable\nstop\n");
}

TEST_F(HeadlessSimTest, OffersShellsTheOptionsOfItsHelpAndFiles) {
    run("--help");
    std::string helped;
    for (const std::string& line : linesOf(output)) {
        if (line.starts_with("  -")) {
            const std::string option = line.substr(line.find("--"));
            helped += option.substr(0, option.find(' ')) + "\n";
        }
    }
    EXPECT_EQ(run("__complete my.xpl -"), 0);
    std::string offered;
    for (const std::string& line : linesOf(output)) {
        offered += line.substr(0, line.find('\t')) + "\n";
    }
    EXPECT_EQ(offered, helped);
    EXPECT_EQ(run("__complete --dur"), 0);
    EXPECT_EQ(output, "--duration\tSimulated seconds to fly\n");
    EXPECT_EQ(run("__complete --system pl"), 0);
    EXPECT_EQ(output, ":files\n");
}

TEST_F(HeadlessSimTest, WritesTheLogWhereItIsTold) {
    EXPECT_EQ(run(FAKE_PLUGIN " --duration 0 --log other.txt"), 0);
    EXPECT_THAT(folder.Read("other.txt"), StartsWith("start\n"));
    EXPECT_FALSE(folder.Has("Log.txt"));
}

TEST_F(HeadlessSimTest, TheConsoleAnswersEveryLineAndTheEndOfInputEndsTheRun) {
    EXPECT_EQ(run(FAKE_PLUGIN " --console --paused",
                  "frames\nstep 7\nget fake/counter\nnonsense\nframes"),
              0);
    EXPECT_THAT(
        output,
        StartsWith("frames 0\nframe 7\nfake/counter = 7\n"
                   "error: unknown statement \"nonsense\"; see help\nframes 7\nframes 7, "));
    EXPECT_THAT(folder.Read("Log.txt"), EndsWith("disable\nstop\n"));
}

TEST_F(HeadlessSimTest, QuitEndsTheRunAndLeavesLaterLinesUnread) {
    EXPECT_EQ(run(FAKE_PLUGIN " --console", "quit\nframes\n"), 0);
    EXPECT_THAT(output, StartsWith("ok\nframes 0, "));
}

TEST_F(HeadlessSimTest, CarriesOutAScript) {
    folder.Write("a.scenario", "frames 7\nget fake/counter\nexpect fake/counter == 7\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --paused --script a.scenario"), 0);
    EXPECT_THAT(output, StartsWith("fake/counter = 7\nframes 7, "));
    EXPECT_EQ(errors, "");
    EXPECT_EQ(
        run(FAKE_PLUGIN " --script -", "rate 1000\nwait 50ms\nexpect fake/counter > 5\nquit 9"), 9);
    EXPECT_EQ(errors, "");
}

TEST_F(HeadlessSimTest, AnExpectationThatIsNotMetIsOneLineAndStatus3) {
    folder.Write("a.scenario", "# Not so.\nexpect fake/counter == 1\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --script a.scenario --junit report.xml"), 3);
    EXPECT_EQ(errors, "headless-sim: a.scenario:2: expected fake/counter == 1, got 0\n");
    EXPECT_THAT(folder.Read("report.xml"), HasSubstr("tests=\"1\" failures=\"1\" errors=\"0\""));
    EXPECT_THAT(folder.Read("Log.txt"), EndsWith("disable\nstop\n"));
}

TEST_F(HeadlessSimTest, AMalformedScriptIsOneLineAndStatus2BeforeAnythingFlies) {
    folder.Write("a.scenario", "pause\nfly\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --script a.scenario"), 2);
    EXPECT_EQ(errors, "headless-sim: a.scenario:2: unknown statement \"fly\"; see help\n");
    EXPECT_EQ(folder.Read("Log.txt"), "");
    EXPECT_EQ(run(FAKE_PLUGIN " --script none"), 2);
    EXPECT_EQ(errors, "headless-sim: none: cannot be opened: No such file or directory\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --script - --junit none/report.xml", "pause"), 2);
    EXPECT_EQ(errors,
              "headless-sim: none/report.xml: cannot write the report: No such file or "
              "directory\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --script a.scenario --console"), 2);
    EXPECT_EQ(run(FAKE_PLUGIN " --junit report.xml"), 2);
}

TEST_F(HeadlessSimTest, AScriptThatTheDurationCutsShortHasNotPassed) {
    EXPECT_EQ(run(FAKE_PLUGIN " --duration 0.1 --script -", "wait 10s"), 3);
    EXPECT_EQ(errors, "headless-sim: standard input:1: the run ended before the scenario did\n");
}

TEST_F(HeadlessSimTest, ReplaysAndRecords) {
    folder.Write("in.csv", "time,sim/cockpit2/controls/flap_ratio,my/none\n0,0.25,1\n0.1,0.5,1\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --replay in.csv --speed 10 --hz 100 "
                              "--record out.csv fake/counter sim/cockpit2/controls/flap_ratio"),
              0);
    EXPECT_EQ(errors, "headless-sim: warning: in.csv: no such dataref: my/none; it is left out\n");
    EXPECT_THAT(folder.Read("out.csv"),
                MatchesRegex("time,fake/counter:int,sim/cockpit2/controls/flap_ratio:float\n"
                             "0.000000,1,0.25\n(.*\n)*0.0[0-9]*,[0-9]+,0.5\n"));
}

TEST_F(HeadlessSimTest, WhatCannotBeReplayedOrRecordedIsOneLineAndStatus2) {
    folder.Write("bad.fdr", "A\n3\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --replay bad.fdr"), 2);
    EXPECT_EQ(errors, "headless-sim: bad.fdr:2: only version 4 of the format is read\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --replay none.csv"), 2);
    EXPECT_EQ(errors, "headless-sim: none.csv: cannot be opened: No such file or directory\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --replay words.txt"), 2);
    EXPECT_EQ(errors, "headless-sim: words.txt: a replay is a .fdr or a .csv file\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --record out.csv no/such"), 2);
    EXPECT_EQ(errors, "headless-sim: no such dataref: no/such\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --record out.csv"), 2);
    EXPECT_EQ(run(FAKE_PLUGIN " --speed 2"), 2);
}

TEST_F(HeadlessSimTest, AScriptFliesOnAfterAReplay) {
    folder.Write("in.csv", "sim/cockpit2/controls/flap_ratio\n0.25\n0.5\n");
    EXPECT_EQ(run(FAKE_PLUGIN " --paused --replay in.csv --script -",
                  "frames 1\nexpect sim/cockpit2/controls/flap_ratio == 0.25\nframes 1\n"
                  "expect sim/cockpit2/controls/flap_ratio == 0.5\n"
                  "set sim/cockpit2/controls/flap_ratio 1\nframes 5\n"
                  "expect sim/cockpit2/controls/flap_ratio == 1"),
              0);
    EXPECT_EQ(errors, "");
}

TEST_F(HeadlessSimTest, ChecksAPluginWithoutFlyingIt) {
    EXPECT_EQ(run("--check " DRAWING_PLUGIN), 0);
    EXPECT_EQ(output, DRAWING_PLUGIN
              ": uses 3 functions of the SDK: 2 real, 0 keep state, 1 answer 0 (XPLMGetTexture)\n");
    EXPECT_FALSE(folder.Has("Log.txt"));
    EXPECT_EQ(run("--check " LACKING_PLUGIN), 1);
    EXPECT_THAT(errors, EndsWith(": XPLMNoSuchOne, XPLMNoSuchTwo, nobodyHasThis\n"));
    EXPECT_EQ(run("--strict " DRAWING_PLUGIN), 1);
    EXPECT_THAT(errors, EndsWith(" answers with 0: XPLMGetTexture\n"));
    EXPECT_EQ(run("--check none.xpl"), 1);
    EXPECT_EQ(errors, "headless-sim: none.xpl: there is no such plugin\n");
}

TEST_F(HeadlessSimTest, FliesInTheWorldOfAVersionOverAGivenGround) {
    EXPECT_EQ(run(FAKE_PLUGIN " --world 11 --ground 600 --console --paused",
                  "get sim/version/xplane_internal_version\nstep 1\n"
                  "get sim/flightmodel/position/y_agl\n"),
              0);
    EXPECT_THAT(output, StartsWith("sim/version/xplane_internal_version = 115501\nframe 1\n"
                                   "sim/flightmodel/position/y_agl = 900\n"));
    EXPECT_EQ(run(FAKE_PLUGIN " --world 9"), 2);
}

TEST_F(HeadlessSimTest, PrintsAtTheEndWhatThePluginUsed) {
    EXPECT_EQ(run(BUSY_PLUGIN " --duration 0.2 --hz 100 --stats"), 0);
    EXPECT_EQ(errors, "");
    EXPECT_THAT(output, StartsWith(BUSY_PLUGIN ": 20 frames\n"));
    EXPECT_THAT(output,
                HasSubstr("\n    XPLMGetElapsedTime                      2.00 per frame, 40\n"));
    EXPECT_THAT(output, HasSubstr("\nthe process: "));
    EXPECT_THAT(output, HasSubstr("\nframes 20, plugin time per frame: "));
}

#ifdef COUNTS_ALLOCATIONS
TEST_F(HeadlessSimTest, CountsWhatThePluginAllocates) {
    EXPECT_EQ(run(BUSY_PLUGIN " --duration 0.2 --hz 100 --stats"), 0);
    EXPECT_THAT(output, HasSubstr("\n  allocations           3.00 per frame, worst 3\n"));
    EXPECT_EQ(run(FAKE_PLUGIN " --duration 0.2 --hz 100 --stats"), 0);
    EXPECT_THAT(output, HasSubstr("\n  allocations           0.00 per frame, worst 0\n"));
}
#endif

TEST_F(HeadlessSimTest, StatisticsForProgramsAreAllThereIsOnStandardOutput) {
    EXPECT_EQ(run(BUSY_PLUGIN " --duration 0.1 --hz 100 --stats --json"), 0);
    const auto report = nlohmann::json::parse(output);
    EXPECT_EQ(report["plugins"][0]["calls"]["XPLMGetElapsedTime"], 20);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(run(BUSY_PLUGIN " --json"), 2);
    EXPECT_EQ(errors, "headless-sim: --json requires --stats\n");
}

TEST_F(HeadlessSimTest, ASignalAsksForStatisticsInFlightAndWhilePaused) {
    for (const std::string options : {"", " --paused"}) {
        folder.Write("Log.txt", "");
        EXPECT_EQ(run(FAKE_PLUGIN " --stats" + options +
                      " & pid=$!; until=$(($(date +%s) + 10)); "
                      "late() { [ $(date +%s) -gt $until ]; }; "
                      "until grep -qs 'message 104' Log.txt || late; do :; done; kill -USR1 $pid; "
                      "until grep -qs process: output || late; do :; done; cp output asked; "
                      "kill -TERM $pid; wait $pid"),
                  0);
        EXPECT_THAT(folder.Read("asked"), StartsWith(FAKE_PLUGIN ": ")) << options;
        EXPECT_THAT(folder.Read("asked"), HasSubstr("\nthe process: ")) << options;
    }
}

TEST_F(HeadlessSimTest, WarnsOfFramesOverTheBudget) {
    EXPECT_EQ(run(BUSY_PLUGIN " --duration 0.2 --hz 100 --budget-us 2000"), 0);
    EXPECT_THAT(errors, MatchesRegex("(headless-sim: warning: " BUSY_PLUGIN
                                     " took [0-9.]+ us of CPU time in frame [0-9]+, 2000 us are "
                                     "allowed: XPLMGetElapsedTime 2, XPLMDebugString 1\n)+"));
    EXPECT_THAT(errors, HasSubstr("in frame 10, "));
    EXPECT_THAT(errors, HasSubstr("in frame 20, "));
    EXPECT_EQ(run(BUSY_PLUGIN " --duration 0.2 --hz 100 --budget-us 1e9"), 0);
    EXPECT_EQ(errors, "");
    EXPECT_THAT(output, StartsWith("frames 20, "));
}

TEST_F(HeadlessSimTest, ListsTheSdksFunctions) {
    EXPECT_EQ(run("--list-functions"), 0);
    EXPECT_THAT(output, HasSubstr("XPLMFindDataRef\tXPLMDataAccess\treal\t\n"));
    EXPECT_THAT(output, HasSubstr("XPLMGetTexture\tXPLMGraphics\tanswers 0\tThere are no "
                                  "textures.\n"));
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 289);
}

TEST_F(HeadlessSimTest, TellsItsVersion) {
    EXPECT_EQ(run("--version"), 0);
    EXPECT_EQ(output, "headless-sim " ORVANE_VERSION "\n");
}

TEST_F(HeadlessSimTest, WarnsWhenThePluginStaysInTheProcess) {
    EXPECT_EQ(run(STICKY_PLUGIN " --duration 0"), 0);
    EXPECT_EQ(errors, "headless-sim: warning: " STICKY_PLUGIN
                      ": the plugin is still in the process after it was unloaded\n");
}

TEST_F(HeadlessSimTest, ThePageHasEveryOption) {
    EXPECT_EQ(run("--help"), 0);
    std::ostringstream page;
    page << std::ifstream(HEADLESS_PAGE).rdbuf();
    std::istringstream lines(output);
    for (std::string word; lines >> word;) {
        const bool ordinary = word != "--help" && word != "--version";
        if (word.starts_with("--") && ordinary) {
            EXPECT_THAT(page.str(), HasSubstr("| `" + word)) << word;
        }
    }
}

TEST_F(HeadlessSimTest, HelpEndsWithExamples) {
    EXPECT_EQ(run("--help"), 0);
    EXPECT_THAT(output, HasSubstr("--duration"));
    EXPECT_THAT(output, HasSubstr("Examples:"));
}
