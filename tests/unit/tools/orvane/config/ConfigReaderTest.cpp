#include <string>

#include <gtest/gtest.h>

#include "tools/orvane/config/ConfigReader.h"

using orvane::tool::config::ConfigLine;
using orvane::tool::config::ConfigReport;
using orvane::tool::config::DatarefType;
using orvane::tool::config::Declaration;
using orvane::tool::config::readConfig;
using orvane::tool::config::Reason;

namespace {

// The result for the only line.
ConfigLine readLine(const std::string& text) {
    const ConfigReport report = readConfig(text);
    EXPECT_EQ(report.lines.size(), 1U) << text;
    return report.lines.empty() ? ConfigLine{} : report.lines.front();
}

void expectRegistered(const std::string& text, const Declaration& declared) {
    const ConfigLine line = readLine(text);
    EXPECT_FALSE(line.IsIgnored()) << text << ": " << line.explanation;
    EXPECT_EQ(line.declared.name, declared.name) << text;
    EXPECT_EQ(line.declared.type, declared.type) << text;
    EXPECT_EQ(line.declared.size, declared.size) << text;
}

void expectIgnored(const std::string& text, Reason reason, const std::string& explanation) {
    const ConfigLine line = readLine(text);
    EXPECT_EQ(line.reason, reason) << text << ": " << line.explanation;
    EXPECT_EQ(line.explanation, explanation) << text;
}

} // namespace

TEST(ConfigReaderTest, RegistersEveryType) {
    expectRegistered("kyr/a int\n", {"kyr/a", DatarefType::Int, 0});
    expectRegistered("kyr/a float\n", {"kyr/a", DatarefType::Float, 0});
    expectRegistered("kyr/a double\n", {"kyr/a", DatarefType::Double, 0});
    expectRegistered("kyr/a int_array 8\n", {"kyr/a", DatarefType::IntArray, 8});
    expectRegistered("kyr/a float_array 1\n", {"kyr/a", DatarefType::FloatArray, 1});
    expectRegistered("kyr/a byte_array 256\n", {"kyr/a", DatarefType::ByteArray, 256});
}

TEST(ConfigReaderTest, NeedsNoPrefixAndNoLastLineEnd) {
    expectRegistered("my_own/value float", {"my_own/value", DatarefType::Float, 0});
}

TEST(ConfigReaderTest, TakesAnyNumberOfSpacesAnywhere) {
    expectRegistered("   kyr/a    int_array   8   \n", {"kyr/a", DatarefType::IntArray, 8});
    expectRegistered("kyr/a float   \n", {"kyr/a", DatarefType::Float, 0});
}

TEST(ConfigReaderTest, SaysNothingAboutEmptyLinesAndComments) {
    const ConfigReport report = readConfig("\n   \n# kyr/a float\n  # more\n\r\n\t\n\t# tab\n");
    EXPECT_TRUE(report.lines.empty());
}

TEST(ConfigReaderTest, CountsAllLines) {
    const ConfigReport report = readConfig("\n# comment\nkyr/a float\n\nkyr/b int");
    ASSERT_EQ(report.lines.size(), 2U);
    EXPECT_EQ(report.lines[0].number, 3U);
    EXPECT_EQ(report.lines[1].number, 5U);
}

TEST(ConfigReaderTest, ReadsTheLineBeforeAComment) {
    expectRegistered("kyr/a float # a light\n", {"kyr/a", DatarefType::Float, 0});
    expectRegistered("kyr/a float#a light\n", {"kyr/a", DatarefType::Float, 0});
    expectRegistered("kyr/a int_array 8# eight\n", {"kyr/a", DatarefType::IntArray, 8});
    expectRegistered("kyr/a float # \r\n", {"kyr/a", DatarefType::Float, 0});
}

TEST(ConfigReaderTest, IgnoresATabInPlaceOfASpace) {
    expectIgnored("kyr/a\tfloat\n", Reason::Tab, "tabs do not separate fields; use spaces");
    expectIgnored("kyr/a\tfloat \n", Reason::Tab, "tabs do not separate fields; use spaces");
    expectIgnored("kyr/a float\t# light\n", Reason::CutByComment,
                  "the comment sign cuts the line after \"float\t\"");
    expectIgnored("kyr/a float\t\n", Reason::Tab, "the tab is part of the type \"float\t\"");
    expectIgnored("kyr/a int_array\t8\n", Reason::Tab,
                  "the tab is part of the type \"int_array\t8\"");
}

TEST(ConfigReaderTest, KeepsATabInANameAndSaysSo) {
    const ConfigLine line = readLine("\tkyr/a float\n");
    EXPECT_FALSE(line.IsIgnored());
    EXPECT_EQ(line.declared.name, "\tkyr/a");
    EXPECT_EQ(line.notes, std::vector<std::string>{"the tab is part of the name"});
}

TEST(ConfigReaderTest, IgnoresScalarsWithACarriageReturn) {
    expectIgnored("kyr/a float\r\n", Reason::CarriageReturn,
                  "the carriage return is part of the type \"float\r\"");
    expectRegistered("kyr/a float \r\n", {"kyr/a", DatarefType::Float, 0});
}

TEST(ConfigReaderTest, AcceptsArraysWithACarriageReturn) {
    const ConfigLine line = readLine("kyr/a int_array 8\r\n");
    EXPECT_FALSE(line.IsIgnored());
    EXPECT_EQ(line.declared.size, 8);
    EXPECT_TRUE(line.notes.empty());
    expectIgnored("kyr/a int_array \r\n", Reason::NoSize, "no number of elements after int_array");
    expectIgnored("kyr/a int_array\r\n", Reason::CarriageReturn,
                  "the carriage return is part of the type \"int_array\r\"");
}

TEST(ConfigReaderTest, IgnoresUnknownAndMissingTypes) {
    expectIgnored("kyr/a Float\n", Reason::UnknownType, "unknown type \"Float\"");
    expectIgnored("kyr/a long\n", Reason::UnknownType, "unknown type \"long\"");
    expectIgnored("float kyr/a\n", Reason::UnknownType, "unknown type \"kyr/a\"");
    expectIgnored("kyr/a\n", Reason::NoType, "no type after the name \"kyr/a\"");
    expectIgnored("kyr/a \n", Reason::NoType, "no type after the name \"kyr/a\"");
    expectIgnored("kyr/a # float\n", Reason::NoType, "no type after the name \"kyr/a\"");
}

TEST(ConfigReaderTest, IgnoresWhatACommentSignCuts) {
    expectIgnored("kyr/x#y float\n", Reason::CutByComment,
                  "the comment sign cuts the line after \"kyr/x\"");
    expectIgnored("kyr/x flo#at\n", Reason::CutByComment,
                  "the comment sign cuts the line after \"flo\"");
    expectIgnored("kyr/x int_array#8\n", Reason::CutByComment,
                  "no number of elements after int_array");
}

TEST(ConfigReaderTest, IgnoresInvalidSizes) {
    expectIgnored("kyr/a int_array\n", Reason::NoSize, "no number of elements after int_array");
    expectIgnored("kyr/a byte_array \n", Reason::NoSize, "no number of elements after byte_array");
    expectIgnored("kyr/a int_array many\n", Reason::SizeNotANumber, "\"many\" is not a number");
    expectIgnored("kyr/a int_array - 5\n", Reason::SizeNotANumber, "\"-\" is not a number");
    expectIgnored("kyr/a int_array 0\n", Reason::SizeBelowOne,
                  "the number of elements \"0\" reads as 0, below 1");
    expectIgnored("kyr/a int_array -3\n", Reason::SizeBelowOne,
                  "the number of elements \"-3\" reads as -3, below 1");
    expectIgnored("kyr/a int_array 0x10\n", Reason::SizeBelowOne,
                  "the number of elements \"0x10\" reads as 0, below 1");
    expectIgnored("kyr/a float_array 2147483648\n", Reason::SizeTooLarge,
                  "the number of elements \"2147483648\" does not fit in 32 bits");
    expectIgnored("kyr/a float_array -99999999999999999999\n", Reason::SizeTooLarge,
                  "the number of elements \"-99999999999999999999\" does not fit in 32 bits");
}

TEST(ConfigReaderTest, ReadsSizesAsThePluginDoes) {
    expectRegistered("kyr/a int_array 2147483647\n", {"kyr/a", DatarefType::IntArray, 2147483647});
    expectRegistered("kyr/a int_array +5\n", {"kyr/a", DatarefType::IntArray, 5});
    expectRegistered("kyr/a int_array \t007\n", {"kyr/a", DatarefType::IntArray, 7});
    const ConfigLine line = readLine("kyr/a int_array 3.5\n");
    EXPECT_EQ(line.declared.size, 3);
    EXPECT_EQ(line.notes, std::vector<std::string>{"the number of elements \"3.5\" reads as 3"});
}

TEST(ConfigReaderTest, SaysWhatIsIgnored) {
    EXPECT_EQ(readLine("kyr/a float 8\n").notes,
              std::vector<std::string>{"\"8\" and everything after it is ignored"});
    EXPECT_EQ(readLine("kyr/a int_array 8 9 10\n").notes,
              std::vector<std::string>{"\"9\" and everything after it is ignored"});
    EXPECT_TRUE(readLine("kyr/a int_array 8 \n").notes.empty());
}

TEST(ConfigReaderTest, IgnoresANameThatAnEarlierLineRegisters) {
    const ConfigReport report =
        readConfig("kyr/a Float\nkyr/a float\nkyr/b int\nkyr/a int_array 4\nkyr/a float\n");
    ASSERT_EQ(report.lines.size(), 5U);
    EXPECT_EQ(report.lines[0].reason, Reason::UnknownType);
    EXPECT_FALSE(report.lines[1].IsIgnored());
    EXPECT_FALSE(report.lines[2].IsIgnored());
    EXPECT_EQ(report.lines[3].reason, Reason::Duplicate);
    EXPECT_EQ(report.lines[3].explanation, "line 2 already declares kyr/a");
    EXPECT_EQ(report.lines[4].explanation, "line 2 already declares kyr/a");
    EXPECT_EQ(report.IgnoredCount(), 3U);
}

TEST(ConfigReaderTest, CutsNamesAtAZeroByteAsTheSimulatorDoes) {
    using namespace std::string_literals;
    const ConfigReport report = readConfig("kyr/a\0b float\nkyr/a int\n"s);
    ASSERT_EQ(report.lines.size(), 2U);
    EXPECT_FALSE(report.lines[0].IsIgnored());
    EXPECT_EQ(report.lines[0].notes,
              std::vector<std::string>{"the simulator reads the name up to the zero byte"});
    EXPECT_EQ(report.lines[1].reason, Reason::Duplicate);
}

TEST(ConfigReaderTest, AppendsThePluginsOwnInTheirOrder) {
    const ConfigReport report = readConfig("");
    const std::vector<Declaration> expected = {
        {"kyr/autopilot_external_control", DatarefType::Int, 0},
        {"kyr/autopilot_trigger_disable", DatarefType::Int, 0},
        {"kyr/external_forcescalefactor_active", DatarefType::IntArray, 4},
        {"kyr/external_forcescalefactor_value", DatarefType::IntArray, 4}};
    EXPECT_EQ(report.appended, expected);
}

TEST(ConfigReaderTest, LeavesOutOfTheAppendedWhatALineRegisters) {
    const ConfigReport report = readConfig(
        "kyr/external_forcescalefactor_value float_array 6\n"
        "kyr/autopilot_trigger_disable int\n"
        "kyr/autopilot_external_control integer\n");
    ASSERT_EQ(report.lines.size(), 3U);
    // The file comes first, so the plugin's own declaration is the one that is refused.
    EXPECT_EQ(report.lines[0].notes,
              std::vector<std::string>{"replaces the plugin's own int_array[4]"});
    EXPECT_TRUE(report.lines[1].notes.empty());
    ASSERT_EQ(report.appended.size(), 2U);
    EXPECT_EQ(report.appended[0].name, "kyr/autopilot_external_control");
    EXPECT_EQ(report.appended[1].name, "kyr/external_forcescalefactor_active");
}
