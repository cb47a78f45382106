#include <stdexcept>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/lists/TextLines.h"
#include "headless/recording/Recorder.h"
#include "headless/recording/Replay.h"
#include "headless/tracks/CsvTrack.h"
#include "headless/tracks/FdrTrack.h"
#include "headless/tracks/Track.h"
#include "scenario/FlightTest.h"

using headless::parseCsv;
using headless::parseFdr;
using headless::readTrack;
using headless::Recorder;
using headless::Replay;
using headless::TextFileError;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// Ten frames a second.
class ReplayTest : public FlightTest {
protected:
    double get(const std::string& name) {
        return session.Simulator().Datarefs().GetDouble("sim/flightmodel/position/" + name);
    }
    float getFloat(const std::string& name) {
        return session.Simulator().Datarefs().GetFloat(name);
    }
};

TEST_F(ReplayTest, ARowCountsFromItsTimeToTheNext) {
    Replay replay(session,
                  parseCsv("time,sim/cockpit2/controls/flap_ratio\n0,0.25\n0.2,0.5\n", "a.csv", 1),
                  1.0);
    session.AddListener(replay);
    say("frames 1");
    EXPECT_EQ(getFloat("sim/cockpit2/controls/flap_ratio"), 0.25F);
    say("frames 1");
    EXPECT_EQ(getFloat("sim/cockpit2/controls/flap_ratio"), 0.25F);
    EXPECT_FALSE(replay.IsOver());
    say("frames 1");
    EXPECT_EQ(getFloat("sim/cockpit2/controls/flap_ratio"), 0.5F);
    EXPECT_TRUE(replay.IsOver());
}

TEST_F(ReplayTest, PlaysFasterAndSlower) {
    Replay replay(session,
                  parseCsv("time,sim/cockpit2/controls/flap_ratio\n0,0.1\n2,0.2\n4,0.3\n", "", 1),
                  10.0);
    session.AddListener(replay);
    say("frames 3");
    EXPECT_EQ(getFloat("sim/cockpit2/controls/flap_ratio"), 0.2F);
    EXPECT_DOUBLE_EQ(replay.Elapsed(), 3.0);
    EXPECT_EQ(replay.Length(), 4.0);
}

TEST_F(ReplayTest, MovesTheAircraftInsteadOfTheFlightModel) {
    Replay replay(session,
                  parseFdr("A\n4\n"
                           "12:00:00, 11.34, 47.26, 5000, 90, 1.5, -2\n"
                           "12:00:01, 11.34, 48.26, 6000, 270, 3, 4\n",
                           "a.fdr"),
                  1.0);
    session.AddListener(replay);
    say("frames 5");
    EXPECT_EQ(get("latitude"), 47.26);
    EXPECT_EQ(get("longitude"), 11.34);
    EXPECT_EQ(get("elevation"), 1524);
    EXPECT_EQ(getFloat("sim/flightmodel/position/psi"), 90.0F);
    EXPECT_EQ(getFloat("sim/flightmodel/position/theta"), 1.5F);
    EXPECT_EQ(getFloat("sim/flightmodel/position/phi"), -2.0F);
    EXPECT_EQ(getFloat("sim/time/zulu_time_sec"), 43200.0F);
    say("frames 6");
    EXPECT_EQ(get("latitude"), 48.26);
    EXPECT_NEAR(get("local_z"), -111'320.0, 1e-6) << "a degree further north";
    EXPECT_NEAR(getFloat("sim/cockpit2/gauges/indicators/altitude_ft_pilot"), 6000, 0.1);
    EXPECT_EQ(getFloat("sim/cockpit2/gauges/indicators/roll_AHARS_deg_pilot"), 4.0F);
    EXPECT_TRUE(replay.IsOver());
}

TEST_F(ReplayTest, TheFlightModelGoesOnWhereTheReplayEnds) {
    Replay replay(session, parseFdr("A\n4\n12:00:00, 11, 47, 5000, 0, 0, 0\n", "a.fdr"), 1.0);
    session.AddListener(replay);
    say("frames 1");
    EXPECT_EQ(get("latitude"), 47);
    say("frames 10");
    EXPECT_GT(get("latitude"), 47.0001);
}

TEST_F(ReplayTest, TheFlightModelFliesByReplayedControls) {
    Replay replay(session,
                  parseCsv("time,sim/cockpit2/controls/yoke_roll_ratio\n0,0.5\n1,0.5\n", "", 1),
                  1.0);
    session.AddListener(replay);
    say("frames 10");
    EXPECT_GT(getFloat("sim/flightmodel/position/phi"), 5.0F);
    EXPECT_GT(get("latitude"), 47.26);
}

TEST_F(ReplayTest, WhatTheFileSaysOfAnInstrumentCounts) {
    Replay replay(session,
                  parseFdr("A\n4\nDREF, sim/cockpit2/gauges/indicators/altitude_ft_pilot 1\n"
                           "DREF, sim/cockpit2/engine/actuators/throttle_ratio[1] 0.01\n"
                           "DREF, sim/cockpit2/controls/gear_handle_down 1\n"
                           "12:00:00, 11, 47, 5000, 0, 0, 0, 1234, 75, 0.4\n",
                           "a.fdr"),
                  1.0);
    session.AddListener(replay);
    say("frames 1");
    EXPECT_EQ(getFloat("sim/cockpit2/gauges/indicators/altitude_ft_pilot"), 1234.0F);
    EXPECT_EQ(say("get sim/cockpit2/engine/actuators/throttle_ratio[0:3]"),
              "sim/cockpit2/engine/actuators/throttle_ratio[0:3] = 0.5,0.75,0");
    EXPECT_EQ(say("get sim/cockpit2/controls/gear_handle_down"),
              "sim/cockpit2/controls/gear_handle_down = 0")
        << "the nearest whole number";
}

TEST_F(ReplayTest, LoadsTheAircraftAndTellsRemarks) {
    Replay replay(session,
                  parseFdr("A\n4\nACFT, Aircraft/Own/My Plane.acf\nTAIL, OE-ABC\n"
                           "TEXT, 1, Take off\nPRES, 29.92\n"
                           "12:00:00, 11, 47, 5000, 0, 0, 0\n12:00:02, 11, 47, 5000, 0, 0, 0\n",
                           "a.fdr"),
                  1.0);
    session.AddListener(replay);
    EXPECT_EQ(say("expect sim/aircraft/view/acf_descrip == My Plane"), "ok");
    EXPECT_EQ(say("expect sim/aircraft/view/acf_tailnum == OE-ABC"), "ok");
    say("frames 10");
    EXPECT_EQ(folder.Read("Log.txt").find("replay"), std::string::npos);
    say("frames 1");
    EXPECT_EQ(say("log expect headless-sim: replay: TEXT, 1, Take off"), "ok");
}

TEST_F(ReplayTest, StandsStillWhileTheSimulatorIsPaused) {
    Replay replay(session, parseCsv("sim/cockpit2/controls/flap_ratio\n0.25\n0.5\n", "", 0.1), 1.0);
    session.AddListener(replay);
    say("set sim/time/paused 1");
    say("frames 5");
    EXPECT_EQ(replay.Elapsed(), 0.0);
    say("set sim/time/paused 0");
    say("frames 1");
    EXPECT_EQ(getFloat("sim/cockpit2/controls/flap_ratio"), 0.25F);
}

TEST_F(ReplayTest, LeavesOutDatarefsThatDoNotExist) {
    Replay replay(session, parseCsv("my/none,sim/cockpit2/controls/flap_ratio\n1,0.5\n", "", 1),
                  1.0);
    EXPECT_THAT(replay.Missing(), ElementsAre("no such dataref: my/none; it is left out"));
    session.AddListener(replay);
    say("frames 1");
    EXPECT_EQ(getFloat("sim/cockpit2/controls/flap_ratio"), 0.5F);
}

TEST_F(ReplayTest, FilesAreToldApartByTheirNames) {
    EXPECT_EQ(readTrack(folder.Write("a.CSV", "sim/a\n1\n"), 1).columns.size(), 1U);
    EXPECT_EQ(readTrack(folder.Write("a.fdr", "A\n4\n1:0 1 2 3 4 5 6\n"), 1).columns.size(), 7U);
    EXPECT_THROW(readTrack(folder.Write("a.txt", "sim/a\n1\n"), 1), TextFileError);
    EXPECT_THROW(readTrack(folder.Path("none.csv"), 1), TextFileError);
    EXPECT_THROW(readTrack(folder.Write("empty.csv", ""), 1), TextFileError);
}

TEST_F(ReplayTest, ARecordingIsReplayedFrameByFrame) {
    {
        Recorder recorder(session.Simulator(), folder.Path("a.csv"),
                          {"fake/counter", "sim/flightmodel/position/latitude",
                           "sim/flightmodel/position/q", "sim/flightmodel/position/q[1]"});
        say("set sim/flightmodel/position/q 1,0.5");
        for (int i = 0; i < 3; ++i) {
            session.RunFrame();
            recorder.AfterFrame();
        }
    }
    const std::string recorded = folder.Read("a.csv");
    EXPECT_THAT(recorded, HasSubstr("time,fake/counter:int,sim/flightmodel/position/latitude:float,"
                                    "sim/flightmodel/position/q:float[4],"
                                    "sim/flightmodel/position/q[1]:float\n0.000000,1,47.26"));
    EXPECT_THAT(recorded, HasSubstr(",\"1,0.5,0,0\",0.5\n0.100000,2,"));
    EXPECT_THAT(recorded, HasSubstr("\n0.200000,3,"));

    const headless::Track track = readTrack(folder.Path("a.csv"), 1);
    EXPECT_THAT(track.warnings, IsEmpty());
    Replay replay(session, track, 1.0);
    session.AddListener(replay);
    for (const headless::TrackRow& row : track.rows) {
        session.RunFrame();
        EXPECT_EQ(get("latitude"), row.numbers[1]);
    }
    EXPECT_TRUE(replay.IsOver());
}

TEST_F(ReplayTest, WhatCannotBeRecordedIsRefused) {
    const auto record = [&](const std::string& file, const std::string& name) {
        try {
            Recorder(session.Simulator(), file, {name});
            return std::string("no error");
        } catch (const std::exception& error) {
            return std::string(error.what());
        }
    };
    EXPECT_EQ(record(folder.Path("a.csv"), "no/such"), "no such dataref: no/such");
    EXPECT_EQ(record(folder.Path("a.csv"), "sim/aircraft/view/acf_tailnum"),
              "sim/aircraft/view/acf_tailnum: text cannot be recorded");
    EXPECT_EQ(record("/dev/full", "fake/counter"),
              "/dev/full: cannot be written: No space left on device");
    EXPECT_EQ(record(folder.Path("none/a.csv"), "fake/counter"),
              folder.Path("none/a.csv") + ": cannot be written: No such file or directory");
}
