#include "tools/orvane/files/RecordWriter.h"

#include <gtest/gtest.h>

#include <limits>

using orvane::tool::csvHeader;
using orvane::tool::csvLine;
using orvane::tool::Format;
using orvane::tool::jsonLine;
using orvane::tool::Record;
using orvane::tool::RecordWriter;

namespace {

TEST(RecordWriterTest, WritesJsonObjectsInTheOrderOfTheirFields) {
    testing::internal::CaptureStdout();
    RecordWriter writer(Format::Json, {"a"});
    writer.Write({{"name", "x"}, {"value", 0.1}, {"a", {1, 2}}});
    writer.Write({{"name", "y"}});
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "{\"name\":\"x\",\"value\":0.1,\"a\":[1,2]}\n{\"name\":\"y\"}\n");
}

TEST(RecordWriterTest, WritesCsvUnderOneHeader) {
    testing::internal::CaptureStdout();
    RecordWriter writer(Format::Csv, {"value", "name"});
    writer.Write({{"name", "x"}, {"value", 0.1}});
    writer.Write({{"name", "y"}, {"value", 2.0}});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "value,name\n0.1,x\n2,y\n");
}

TEST(RecordWriterTest, WritesNothingAsText) {
    testing::internal::CaptureStdout();
    RecordWriter writer(Format::Text, {"name"});
    writer.Write({{"name", "x"}});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(writer.IsWanted());
}

TEST(RecordWriterTest, QuotesWhatWouldBreakALineOfCsv) {
    EXPECT_EQ(csvLine({"a", "b", "c"}, {{"a", "x,y"}, {"b", "say \"x\""}, {"c", "two\nlines"}}),
              "\"x,y\",\"say \"\"x\"\"\",\"two\nlines\"");
    EXPECT_EQ(csvLine({"a"}, {{"a", {1, 2, 3}}}), "\"1,2,3\"");
    EXPECT_EQ(csvLine({"a"}, {{"a", {0.5}}}), "0.5");
    EXPECT_EQ(csvHeader({"time", "a,b"}), "time,\"a,b\"");
}

TEST(RecordWriterTest, LeavesAFieldEmptyThatIsNotThere) {
    EXPECT_EQ(csvLine({"a", "b", "c"}, {{"b", nullptr}, {"c", true}}), ",,true");
}

TEST(RecordWriterTest, WritesJsonInAsciiOnly) {
    EXPECT_EQ(jsonLine({{"unit", "\u00B0C\x1B\x7F"}}), R"({"unit":"\u00b0C\u001b\u007f"})");
    EXPECT_EQ(jsonLine({{"name", "\xFF"}}), R"({"name":"\ufffd"})") << "not UTF-8";
}

} // namespace
