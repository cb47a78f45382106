#include <cmath>
#include <cstdlib>
#include <limits>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tools/orvane/files/RecordWriter.h"

using orvane::tool::aircraftRecord;
using orvane::tool::aircraftText;
using orvane::tool::csvHeader;
using orvane::tool::csvLine;
using orvane::tool::fieldText;
using orvane::tool::Format;
using orvane::tool::jsonText;
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

TEST(RecordWriterTest, WritesUsualNumbersWithoutAnExponent) {
    for (const char* const text : {"0.0001", "0.00012345", "999999", "999999.5", "123456.79",
                                   "-0.1", "0", "1000000", "3.4e+38", "1e-05"}) {
        const double number = std::strtod(text, nullptr);
        EXPECT_EQ(fieldText("a", number), text);
        // JSON shows that a number is not whole by its kind, and may do without the plus sign.
        EXPECT_EQ(Record::parse(jsonText(Record(number))).get<double>(), number);
        if (std::abs(number) < 1e6 && std::abs(number) > 1e-4) {
            EXPECT_EQ(jsonText(Record(number)).find('e'), std::string::npos) << text;
        }
    }
    EXPECT_EQ(jsonText({{"a", 0.00012345}, {"b", 999999.5}}), R"({"a":0.00012345,"b":999999.5})");
}

TEST(RecordWriterTest, WritesWhatIsNotANumberAsNullOrAsAWord) {
    const double infinity = std::numeric_limits<double>::infinity();
    const Record record{
        {"a", std::nan("")}, {"b", -std::nan("")}, {"c", infinity}, {"d", -infinity}};
    EXPECT_EQ(csvLine({"a", "b", "c", "d"}, record), "nan,nan,inf,-inf");
    EXPECT_EQ(jsonText(record), R"({"a":null,"b":null,"c":null,"d":null})");
}

TEST(RecordWriterTest, WritesTheAircraftInTheSameWayEverywhere) {
    const Record record{{"aircraft_id", aircraftRecord(0xB9852EB1)}, {"other", 5}};
    EXPECT_EQ(csvLine({"aircraft_id", "other"}, record), "0xB9852EB1,5");
    EXPECT_EQ(jsonText(record), R"({"aircraft_id":3112513201,"other":5})");
    EXPECT_EQ(aircraftText(0xF), "0x0000000F");
    const Record none{{"aircraft_id", aircraftRecord(0)}};
    EXPECT_EQ(csvLine({"aircraft_id"}, none), "");
    EXPECT_EQ(jsonText(none), R"({"aircraft_id":null})");
}

TEST(RecordWriterTest, WritesJsonInAsciiOnly) {
    EXPECT_EQ(jsonText({{"unit", "\u00B0C\x1B\x7F"}}), R"({"unit":"\u00b0C\u001b\u007f"})");
    EXPECT_EQ(jsonText({{"name", "\xFF"}}), R"({"name":"\ufffd"})") << "not UTF-8";
}

} // namespace
