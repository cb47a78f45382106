#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/lists/DatarefsFile.h"
#include "headless/lists/TextLines.h"
#include "support/TemporaryDirectory.h"
#include "support/TextOf.h"

using headless::DatarefDefinition;
using headless::DatarefsFile;
using headless::TextFileError;

namespace {

std::vector<DatarefDefinition> parse(const std::string& text) {
    std::istringstream stream(text);
    return DatarefsFile::Parse(stream, "DataRefs.txt").definitions;
}

std::vector<std::string> warningsOf(const std::string& text) {
    std::istringstream stream(text);
    return DatarefsFile::Parse(stream, "DataRefs.txt").warnings;
}

std::string errorOf(const std::string& text) {
    return textOf<TextFileError>([&] { parse(text); });
}

} // namespace

TEST(DatarefsFileTest, ReadsNameTypeWritableUnitsAndDescription) {
    const auto definitions = parse("sim/a/b\tfloat\ty\tdegrees\tAn angle, in degrees\n");
    ASSERT_EQ(definitions.size(), 1U);
    EXPECT_EQ(definitions[0].name, "sim/a/b");
    EXPECT_EQ(definitions[0].types, xplmType_Float);
    EXPECT_EQ(definitions[0].elements, 0);
    EXPECT_TRUE(definitions[0].writable);
    EXPECT_EQ(definitions[0].units, "degrees");
    EXPECT_EQ(definitions[0].description, "An angle, in degrees");
}

TEST(DatarefsFileTest, KnowsEveryType) {
    const auto definitions = parse(
        "t/1\tint\tn\nt/2\tfloat\tn\nt/3\tdouble\tn\nt/4\tint[4]\tn\nt/5\tfloat[8]\tn\n"
        "t/6\tbyte[500]\tn\nt/7\tfloat[4][3]\tn\n");
    ASSERT_EQ(definitions.size(), 7U);
    EXPECT_EQ(definitions[0].types, xplmType_Int);
    EXPECT_EQ(definitions[1].types, xplmType_Float);
    EXPECT_EQ(definitions[2].types, xplmType_Double | xplmType_Float);
    EXPECT_EQ(definitions[3].types, xplmType_IntArray);
    EXPECT_EQ(definitions[3].elements, 4);
    EXPECT_EQ(definitions[4].types, xplmType_FloatArray);
    EXPECT_EQ(definitions[4].elements, 8);
    EXPECT_EQ(definitions[5].types, xplmType_Data);
    EXPECT_EQ(definitions[5].elements, 500);
    EXPECT_EQ(definitions[6].types, xplmType_FloatArray);
    EXPECT_EQ(definitions[6].elements, 12);
    EXPECT_FALSE(definitions[6].writable);
}

TEST(DatarefsFileTest, SkipsTheVersionHeaderBlankLinesAndCarriageReturns) {
    const auto definitions = parse("2 1102 Tue Aug 2 2016\r\n\r\n  \t\r\nsim/a\tint\ty\r\n");
    ASSERT_EQ(definitions.size(), 1U);
    EXPECT_EQ(definitions[0].name, "sim/a");
    EXPECT_TRUE(definitions[0].writable);
}

TEST(DatarefsFileTest, TheHeaderCanBeMissing) {
    EXPECT_EQ(parse("sim/a\tint\ty\nsim/b\tint\ty").size(), 2U);
    EXPECT_TRUE(parse("").empty());
}

TEST(DatarefsFileTest, AVersionHeaderElsewhereIsMalformed) {
    EXPECT_EQ(warningsOf("sim/a\tint\ty\n2 1102 Tue Aug 2 2016\n"),
              (std::vector<std::string>{
                  "DataRefs.txt:2: name, type and writable are expected, separated by tabs"}));
}

TEST(DatarefsFileTest, ALineThatCannotBeReadIsSkippedWithAWarning) {
    const std::string text =
        "2\t1250\tThu Aug 1 2024\n\n"
        "sim/aircraft/view/acf_livery_path\tbyte[]\ty\tstring\tPath of the livery\n"
        "sim/cockpit/blanks float y units With blanks\n"
        "sim/flightmodel/position/latitude\tdouble\tn\tdegrees\tLatitude\n";
    EXPECT_EQ(warningsOf(text),
              (std::vector<std::string>{
                  "DataRefs.txt:4: name, type and writable are expected, separated by tabs"}));
    const auto definitions = parse(text);
    ASSERT_EQ(definitions.size(), 2U);
    EXPECT_EQ(definitions[0].types, xplmType_Data);
    EXPECT_EQ(definitions[0].elements, 256);
    EXPECT_EQ(definitions[1].name, "sim/flightmodel/position/latitude");
}

// The lists of the simulator's versions differ in their first line and in the last columns.
TEST(DatarefsFileTest, ReadsTheListsOfAllVersions) {
    for (const char* header :
         {"2\t850\tTue Dec 12 2006", "2 900 Fri Jan 12 2007", "2 1000 Mon Nov 21 2011",
          "2 1150 Thu Jun 04 2020", "2 1200 Fri Sep 02 2022"}) {
        const auto definitions = parse(std::string(header) +
                                       "\n\nsim/a\tint\tn\tbool\tA switch\n"
                                       "sim/b\tfloat[8]\ty\t???\n"
                                       "sim/c\tint[10][50]\tn\n");
        ASSERT_EQ(definitions.size(), 3U) << header;
        EXPECT_EQ(definitions[1].units, "???");
        EXPECT_EQ(definitions[2].elements, 500);
    }
}

TEST(DatarefsFileTest, MissingColumnsAreMalformed) {
    EXPECT_EQ(errorOf("sim/a\tint\n"),
              "DataRefs.txt:1: name, type and writable are expected, separated by tabs");
    EXPECT_EQ(errorOf("\nsim/a int y\n"),
              "DataRefs.txt:2: name, type and writable are expected, separated by tabs");
}

TEST(DatarefsFileTest, AnEmptyNameOrOneWithBlanksIsMalformed) {
    EXPECT_EQ(errorOf("\tint\ty\n"), "DataRefs.txt:1: the name is empty or has blanks");
    EXPECT_EQ(errorOf("sim/a b\tint\ty\n"), "DataRefs.txt:1: the name is empty or has blanks");
}

TEST(DatarefsFileTest, AnUnknownTypeIsMalformed) {
    EXPECT_EQ(errorOf("sim/a\tlong\ty\n"), "DataRefs.txt:1: unknown type \"long\"");
    EXPECT_EQ(errorOf("sim/a\tdouble[3]\ty\n"), "DataRefs.txt:1: unknown type \"double[3]\"");
    EXPECT_EQ(errorOf("sim/a\tbyte\ty\n"), "DataRefs.txt:1: unknown type \"byte\"");
    EXPECT_EQ(errorOf("sim/a\t\ty\n"), "DataRefs.txt:1: unknown type \"\"");
}

TEST(DatarefsFileTest, ABadArraySizeIsMalformed) {
    const std::string noNumber = "DataRefs.txt:1: the array size is not a number of elements";
    const std::string noForm = "DataRefs.txt:1: the array size is not of the form [N]";
    EXPECT_EQ(errorOf("sim/a\tint[0]\ty\n"), noNumber);
    EXPECT_EQ(errorOf("sim/a\tint[-1]\ty\n"), noNumber);
    EXPECT_EQ(errorOf("sim/a\tint[4x]\ty\n"), noNumber);
    EXPECT_EQ(errorOf("sim/a\tint[99999999999]\ty\n"), noNumber);
    EXPECT_EQ(errorOf("sim/a\tint[100000][100000]\ty\n"), noNumber);
    EXPECT_EQ(errorOf("sim/a\tint[4\ty\n"), noForm);
    EXPECT_EQ(errorOf("sim/a\tint[4]x\ty\n"), noForm);
}

TEST(DatarefsFileTest, WritableIsYOrN) {
    EXPECT_EQ(errorOf("sim/a\tint\tyes\n"), "DataRefs.txt:1: writable is neither y nor n");
    EXPECT_EQ(errorOf("sim/a\tint\t\n"), "DataRefs.txt:1: writable is neither y nor n");
}

TEST(DatarefsFileTest, ReadsAFileFromDiskAndNamesItInErrors) {
    const TemporaryDirectory folder;
    const std::string good = folder.Write("good.txt", "sim/a\tint\ty\n");
    const std::string bad = folder.Write("bad.txt", "2 1200 Fri Sep 02 2022\nsim/b\n");
    EXPECT_EQ(DatarefsFile::Read(good).definitions.size(), 1U);
    EXPECT_EQ(textOf<TextFileError>([&] { DatarefsFile::Read(bad); }),
              bad + ":2: name, type and writable are expected, separated by tabs");
}

TEST(DatarefsFileTest, AMissingFileIsReportedInOneLine) {
    const TemporaryDirectory folder;
    EXPECT_EQ(textOf<TextFileError>([&] { DatarefsFile::Read(folder.Path("none.txt")); }),
              folder.Path("none.txt") + ": cannot be opened: No such file or directory");
}

TEST(DatarefsFileTest, AFolderInsteadOfAFileIsReported) {
    const TemporaryDirectory folder;
    EXPECT_THROW(DatarefsFile::Read(folder.Path("")), TextFileError);
}
