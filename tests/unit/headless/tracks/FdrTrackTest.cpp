#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/lists/TextLines.h"
#include "headless/tracks/FdrTrack.h"

using headless::parseFdr;
using headless::TextFileError;
using headless::Track;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const std::string kHead = "A\n4\n";
const std::string kRow = "12:30:00, 11.5, 47.5, 1000, 90, 1.5, -2\n";

std::string errorOf(const std::string& text) {
    try {
        parseFdr(text, "a.fdr");
        return "no error";
    } catch (const TextFileError& error) {
        return error.what();
    }
}

std::vector<double> times(const Track& track) {
    std::vector<double> seconds;
    for (const headless::TrackRow& row : track.rows) {
        seconds.push_back(row.seconds);
    }
    return seconds;
}

std::string rowAt(const std::string& time) {
    return time + " 11.5 47.5 1000 90 1.5 -2\n";
}

} // namespace

TEST(FdrTrackTest, ReadsPositionAndAttitudeInTheSimulatorsUnits) {
    const Track track = parseFdr(kHead + kRow, "a.fdr");
    std::vector<std::string> names;
    for (const headless::TrackColumn& column : track.columns) {
        names.push_back(column.name);
    }
    EXPECT_THAT(names, ElementsAre("sim/flightmodel/position/longitude",
                                   "sim/flightmodel/position/latitude",
                                   "sim/flightmodel/position/elevation",
                                   "sim/flightmodel/position/psi", "sim/flightmodel/position/theta",
                                   "sim/flightmodel/position/phi", "sim/time/zulu_time_sec"));
    ASSERT_EQ(track.rows.size(), 1U);
    EXPECT_THAT(track.rows[0].numbers, ElementsAre(11.5, 47.5, 304.8, 90, 1.5, -2, 45000));
    EXPECT_THAT(track.warnings, IsEmpty());
}

TEST(FdrTrackTest, FieldsAreSeparatedByCommasTabsAndBlanks) {
    for (const char* row :
         {"12:30:00,11.5,47.5,1000,90,1.5,-2", "12:30:00 11.5 47.5 1000 90 1.5 -2",
          "12:30:00\t11.5,\t47.5 ,1000\t 90, +1.5,  -2,",
          "  12:30:00, 11.5, 47.5, 1000, 90, 1.5, -2 \t"}) {
        const Track track = parseFdr(kHead + row, "a.fdr");
        ASSERT_EQ(track.rows.size(), 1U) << row;
        EXPECT_THAT(track.rows[0].numbers, ElementsAre(11.5, 47.5, 304.8, 90, 1.5, -2, 45000));
    }
}

TEST(FdrTrackTest, LinesEndInAnyWay) {
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        const Track track =
            parseFdr("I" + end + "4 version of the format" + end + end + "COMM, words" + end +
                         "12:30:00 11.5 47.5 1000 90 1.5 -2" + end,
                     "a.fdr");
        EXPECT_EQ(track.rows.size(), 1U);
    }
}

TEST(FdrTrackTest, ADrefIsAColumnWithAFactor) {
    const Track track = parseFdr(kHead +
                                     "DREF, sim/a\t0.5\t\t// comment: 1 2 3\n"
                                     "DREF, sim/b[3] 2.0\n"
                                     "DREF,sim/c\n"
                                     "12:30:00 11.5 47.5 1000 90 1.5 -2 4 5 6\n",
                                 "a.fdr");
    ASSERT_EQ(track.columns.size(), 10U);
    EXPECT_EQ(track.columns[7].name, "sim/a");
    EXPECT_EQ(track.columns[8].name, "sim/b[3]");
    EXPECT_EQ(track.columns[9].name, "sim/c");
    EXPECT_EQ(track.columns[7].comment, "comment: 1 2 3");
    EXPECT_EQ(track.columns[7].line, 3);
    EXPECT_EQ(track.columns[8].comment, "");
    EXPECT_THAT(track.rows[0].numbers,
                ElementsAre(11.5, 47.5, 304.8, 90, 1.5, -2, 45000, 2, 10, 6));
}

TEST(FdrTrackTest, ADrefThatCannotBeReadKeepsItsColumn) {
    const Track track = parseFdr(kHead +
                                     "DREF, sim/a many\nDREF, // nothing\nDREF, sim/b 2\n"
                                     "12:30:00 11.5 47.5 1000 90 1.5 -2 4 5 6\n",
                                 "a.fdr");
    EXPECT_THAT(track.warnings,
                ElementsAre("a.fdr:3: \"many\" is not a number", "a.fdr:4: DREF has no dataref"));
    EXPECT_EQ(track.columns[7].name, "");
    EXPECT_EQ(track.columns[8].name, "");
    EXPECT_EQ(track.columns[9].name, "sim/b");
    EXPECT_EQ(track.rows[0].numbers[9], 12);
}

TEST(FdrTrackTest, TimesBeginAtZeroAndGoOnAfterMidnight) {
    EXPECT_THAT(
        times(parseFdr(kHead + rowAt("23:59:59") + rowAt("00:00:01.5") + rowAt("0:1:0"), "a.fdr")),
        ElementsAre(0, 2.5, 61));
}

TEST(FdrTrackTest, RowsOfTheSameTimeAreSpreadOverTheSecondOrTheMinute) {
    EXPECT_THAT(times(parseFdr(kHead + rowAt("12:30:00") + rowAt("12:30:00") + rowAt("12:30:01") +
                                   rowAt("12:30:01"),
                               "a.fdr")),
                ElementsAre(0, 0.5, 1, 1.5));
    EXPECT_THAT(times(parseFdr(kHead + rowAt("12:30") + rowAt("12:30") + rowAt("12:30") +
                                   rowAt("12:31") + rowAt("12:31"),
                               "a.fdr")),
                ElementsAre(0, 20, 40, 60, 90));
    EXPECT_THAT(
        times(parseFdr(kHead + rowAt("12:30:00") + rowAt("12:30:00") + rowAt("12:30:10"), "a.fdr")),
        ElementsAre(0, 0.5, 10));
}

TEST(FdrTrackTest, KeywordsBecomeSettingsAndRemarks) {
    const Track track = parseFdr(kHead +
                                     "COMM, words,\nACFT, Aircraft/Own/My Plane.acf,\n"
                                     "TAIL, OE-ABC,\nTIME, 12:30:15,\nDATE, 08/10/2004,\n"
                                     "PRES, 29.92,\nTEMP, 50,\nDISA, 5,\nWIND, 230,16,\n"
                                     "CALI, 11.3, 47.2, 1906,\n"
                                     "EVNT, 30.5,\nTEXT, 5, Take off,\nMARK, 7,\n"
                                     "WARN, 6, Resources/sounds/alert/1000ft.WAV,\n" +
                                     kRow,
                                 "a.fdr");
    EXPECT_THAT(track.warnings, IsEmpty());
    EXPECT_EQ(track.aircraft, "My Plane");
    std::vector<std::string> settings;
    for (const headless::TrackSetting& setting : track.settings) {
        settings.push_back(setting.dataref + "=" + setting.value);
    }
    EXPECT_THAT(settings,
                ElementsAre("sim/aircraft/view/acf_tailnum=OE-ABC", "sim/time/zulu_time_sec=45015",
                            "sim/weather/barometer_sealevel_inhg=29.92",
                            "sim/weather/temperature_sealevel_c=10",
                            "sim/weather/temperature_sealevel_c=20",
                            "sim/weather/wind_direction_degt=230", "sim/weather/wind_speed_kt=16"));
    std::vector<std::string> remarks;
    for (const headless::TrackRemark& remark : track.remarks) {
        remarks.push_back(remark.text);
    }
    EXPECT_THAT(remarks,
                ElementsAre("TEXT, 5, Take off", "WARN, 6, Resources/sounds/alert/1000ft.WAV",
                            "MARK, 7", "EVNT, 30.5"));
    EXPECT_EQ(track.remarks[0].seconds, 5);
}

TEST(FdrTrackTest, AnUnknownKeywordIsSaidOnce) {
    EXPECT_THAT(parseFdr(kHead + "FOOO, 1\nBARR, 1\nFOOO, 2\n" + kRow, "a.fdr").unknown,
                ElementsAre("a.fdr:3: unknown keyword \"FOOO\"; such lines are skipped",
                            "a.fdr:4: unknown keyword \"BARR\"; such lines are skipped"));
}

TEST(FdrTrackTest, ALineThatCannotBeReadIsLeftOut) {
    const Track track = parseFdr(kHead + kRow +
                                     "12:30:01, 11.5, 47.5, 1000, 90, 1.5\n"
                                     "12:30:02, 11.5, north, 1000, 90, 1.5, -2\n"
                                     "12:29:00, 11.5, 47.5, 1000, 90, 1.5, -2\n"
                                     "25:00:00, 11.5, 47.5, 1000, 90, 1.5, -2\n"
                                     "99, 11.5, 47.5, 1000, 90, 1.5, -2\n,,\nTIME, noon\n",
                                 "a.fdr");
    EXPECT_EQ(track.rows.size(), 1U);
    EXPECT_THAT(track.warnings, ElementsAre("a.fdr:4: 6 fields, but 7 columns",
                                            "a.fdr:5: \"north\" is not a number",
                                            "a.fdr:6: the row is earlier than the one before",
                                            "a.fdr:7: \"25:00:00\" is not a time of day",
                                            "a.fdr:8: \"99\" is not a time such as 12:30:00",
                                            "a.fdr:10: \"noon\" is not a time such as 12:30:00"));
}

TEST(FdrTrackTest, AFileInWhichNothingCanBeReadIsRefused) {
    EXPECT_EQ(errorOf(""), "a.fdr: it has no row of flight data");
    EXPECT_EQ(errorOf(kHead + "COMM, words\n"), "a.fdr: it has no row of flight data");
    EXPECT_EQ(errorOf(kHead + "12:30:01, 11.5\n1, 2\n"), "a.fdr:3: 2 fields, but 7 columns");
    EXPECT_EQ(errorOf("time,sim/a\n0,1\n"), "a.fdr:1: the first line is not A or I");
    EXPECT_EQ(errorOf("\n4\n" + kRow), "a.fdr:1: the first line is not A or I");
    EXPECT_EQ(errorOf("A\n3\n" + kRow), "a.fdr:2: only version 4 of the format is read");
    EXPECT_EQ(errorOf(std::string("\0\x01\xFF\n", 4)), "a.fdr:1: the first line is not A or I");
}
