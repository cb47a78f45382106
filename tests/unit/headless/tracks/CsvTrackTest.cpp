#include <cmath>
#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/lists/TextLines.h"
#include "headless/tracks/CsvTrack.h"

using headless::parseCsv;
using headless::TextFileError;
using headless::Track;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

Track parse(const std::string& text) {
    return parseCsv(text, "a.csv", 0.5);
}

std::string errorOf(const std::string& text) {
    try {
        parse(text);
        return "no error";
    } catch (const TextFileError& error) {
        return error.what();
    }
}

} // namespace

TEST(CsvTrackTest, ReadsWhatTheToolRecords) {
    const Track track = parse(
        "time,sim/a:float,test/ints:int[2],test/more[3]:float,test/more[4:6]:float\n"
        "10.000,0.25,\"3,4\",5,\"6,7\"\n"
        "10.050,-1e-3,\"5,6\",7,\"8,9\"\n");
    ASSERT_EQ(track.columns.size(), 4U);
    EXPECT_EQ(track.columns[0].name, "sim/a");
    EXPECT_EQ(track.columns[1].name, "test/ints");
    EXPECT_EQ(track.columns[1].width, 2U);
    EXPECT_EQ(track.columns[2].name, "test/more[3]");
    EXPECT_EQ(track.columns[3].name, "test/more[4:6]");
    ASSERT_EQ(track.rows.size(), 2U);
    EXPECT_EQ(track.rows[0].seconds, 0);
    EXPECT_NEAR(track.rows[1].seconds, 0.05, 1e-9);
    EXPECT_THAT(track.rows[1].numbers, ElementsAre(-1e-3, 5, 6, 7, 8, 9));
    EXPECT_THAT(track.warnings, IsEmpty());
}

TEST(CsvTrackTest, WithoutTimesARowIsAFrame) {
    const Track track = parse("sim/a,sim/b\n1,2\n3,4\n5,6\n");
    EXPECT_EQ(track.rows[1].seconds, 0.5);
    EXPECT_EQ(track.rows[2].seconds, 1.0);
    EXPECT_THAT(track.rows[2].numbers, ElementsAre(5, 6));
}

TEST(CsvTrackTest, ReadsWhatIsNotFinite) {
    const Track track = parse("sim/a,sim/b\nnan,-inf\n");
    EXPECT_TRUE(std::isnan(track.rows[0].numbers[0]));
    EXPECT_EQ(track.rows[0].numbers[1], -std::numeric_limits<double>::infinity());
}

TEST(CsvTrackTest, ALineThatCannotBeReadIsLeftOut) {
    const Track track = parse(
        "time,sim/a,sim/b\n0,1,\"2,3\"\n1,1\n2,x,\"2,3\"\n3,1,\"2,3\n4,1,2\n-1,1,\"2,3\"\n"
        "5,1,\"2,3\"4\nnow,1,\"2,3\"\nnan,1,\"2,3\"\n");
    EXPECT_EQ(track.rows.size(), 1U);
    EXPECT_THAT(track.warnings,
                ElementsAre("a.csv:3: 2 fields, but 3 columns", "a.csv:4: \"x\" is not a number",
                            "a.csv:5: a quote is not closed",
                            "a.csv:6: sim/b: 1 numbers, but 2 in the first row",
                            "a.csv:7: the row is earlier than the one before",
                            "a.csv:8: text follows a quote", "a.csv:9: \"now\" is not a number",
                            "a.csv:10: \"nan\" is not a finite number"));
}

TEST(CsvTrackTest, AFileInWhichNothingCanBeReadIsRefused) {
    EXPECT_EQ(errorOf(""), "a.csv: it has no row of flight data");
    EXPECT_EQ(errorOf("time,sim/a\n"), "a.csv: it has no row of flight data");
    EXPECT_EQ(errorOf("time,sim/a\nx,y\n"), "a.csv:2: \"x\" is not a number");
    EXPECT_EQ(errorOf("time\n1\n"), "a.csv:1: no datarefs are named");
    EXPECT_EQ(errorOf("1,2,3\n4,5,6\n"), "a.csv:1: \"1\" is not the name of a dataref");
    EXPECT_EQ(errorOf("time,\"sim/a\n1,2\n"), "a.csv:1: a quote is not closed");
}
