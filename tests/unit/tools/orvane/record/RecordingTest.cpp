#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"
#include "tools/orvane/record/Recording.h"

namespace {

using orvane::tool::DatarefArgument;
using orvane::tool::InputLines;
using orvane::tool::parseDatarefArguments;
using orvane::tool::Problems;
using orvane::tool::readRecording;
using orvane::tool::Recording;
using orvane::tool::recordingHeader;
using orvane::tool::recordingRow;
using orvane::velmar::Type;
using orvane::velmar::Value;

std::vector<DatarefArgument> datarefs() {
    return parseDatarefArguments(
        {"sim/i:int", "sim/f:float", "sim/b:byte", "sim/is:int[2]", "sim/fs:float[3]"});
}

class RecordingTest : public testing::Test {
protected:
    Recording read(const std::string& text) {
        directory.Write("r.csv", text);
        InputLines lines("r.csv");
        Problems problems;
        Recording recording = readRecording(lines, problems);
        problemText = problemLines("r", problems);
        return recording;
    }

    TemporaryDirectory directory;
    std::string problemText;
};

TEST_F(RecordingTest, HasAHeaderOfNamesAndTypesAndArraysInQuotes) {
    EXPECT_EQ(recordingHeader(datarefs()),
              "time,sim/i:int,sim/f:float,sim/b:byte,sim/is:int[2],sim/fs:float[3]");
    EXPECT_EQ(recordingRow(1.25, {Value(-5), Value(0.1F), Value(std::uint8_t{255}),
                                  Value(std::vector<std::int32_t>{1, 2}),
                                  Value(std::vector<float>{0.5F, -1.0F, 3e-7F})}),
              "1.250,-5,0.1,255,\"1,2\",\"0.5,-1,3e-07\"");
}

TEST_F(RecordingTest, ReadsBackExactlyWhatWasWritten) {
    const std::vector<Value> values = {
        Value(std::numeric_limits<std::int32_t>::min()), Value(std::nextafter(0.1F, 1.0F)),
        Value(std::uint8_t{7}), Value(std::vector<std::int32_t>{0, -1}),
        Value(std::vector<float>{std::numeric_limits<float>::denorm_min(),
                                 std::numeric_limits<float>::max(), -0.0F})};
    const Recording recording =
        read(recordingHeader(datarefs()) + "\n" + recordingRow(0.017, values) + "\n");
    EXPECT_EQ(problemText, "");
    ASSERT_EQ(recording.datarefs.size(), 5U);
    EXPECT_EQ(recording.datarefs[3].name, "sim/is");
    EXPECT_EQ(recording.datarefs[3].type, Type::IntArray);
    EXPECT_EQ(recording.datarefs[3].size, 2U);
    ASSERT_EQ(recording.rows.size(), 1U);
    EXPECT_EQ(recording.rows[0].seconds, 0.017);
    EXPECT_EQ(recording.rows[0].values, values);
    EXPECT_TRUE(std::signbit(std::get<4>(recording.rows[0].values[4])[2]));
    EXPECT_EQ(recording.cutLine, 0U);
}

TEST_F(RecordingTest, KeepsElementsByTheirNames) {
    const std::vector<DatarefArgument> elements =
        parseDatarefArguments({"sim/a[3]:float", "sim/a[0:2]", "sim/b[1]:int"});
    const std::string header = recordingHeader(elements);
    EXPECT_EQ(header, "time,sim/a[3]:float,sim/a[0:2]:float,sim/b[1]:int");
    const Recording recording = read(header + "\n0.000,0.5,\"1,2\",7\n");
    EXPECT_EQ(problemText, "");
    ASSERT_EQ(recording.rows.size(), 1U);
    EXPECT_EQ(recording.rows[0].values,
              (std::vector<Value>{Value(0.5F), Value(std::vector<float>{1, 2}), Value(7)}));
    EXPECT_EQ(recording.datarefs[1].Dataref().size, 4U);
    read("time,sim/a[3]:float,sim/a[1]:int\n");
    EXPECT_EQ(problemText, "r:1: sim/a: named both as ints and as floats\n");
}

TEST_F(RecordingTest, LeavesOutALineThatWasCutOff) {
    const Recording recording = read("time,sim/f:float\n0.000,1.5\n0.050,2.5");
    EXPECT_EQ(problemText, "");
    EXPECT_EQ(recording.rows.size(), 1U);
    EXPECT_EQ(recording.cutLine, 3U);
}

TEST_F(RecordingTest, ReportsEveryLineThatIsWrong) {
    read(
        "time,sim/f:float,sim/is:int[2]\n"
        "0.000,x,\"1,2\"\n"
        "0.050,1,2\n"
        "0.100,1\n"
        "later,1,\"1,2\"\n"
        "0.200,1,\"1,2\"\n"
        "0.150,1,\"1,2\"\n"
        "0.300,1,\"1,2\n");
    EXPECT_EQ(problemText,
              "r:2: sim/f: \"x\" is not a number that a float can hold\n"
              "r:3: sim/is: expected 2 elements, got 1 in \"2\"\n"
              "r:4: 2 fields, but 3 columns\n"
              "r:5: \"later\" is not a time in seconds\n"
              "r:7: 0.15 s comes after 0.2 s\n"
              "r:8: a quote is not closed\n");
}

TEST_F(RecordingTest, ReportsAHeaderThatIsWrong) {
    read("");
    EXPECT_EQ(problemText, "r:1: not a recording: it has no header\n");
    read("pitch,roll\n0,0\n");
    EXPECT_EQ(problemText, "r:1: not a recording: its first line is not \"time,NAME:TYPE,...\"\n");
    read("time,sim/f:float,sim/f:int,sim/g\n");
    EXPECT_EQ(problemText, "r:1: sim/g: the type is missing\n");
    read("time,sim/f:float,sim/f:int\n");
    EXPECT_EQ(problemText, "r:1: sim/f: named twice\n");
}

} // namespace
