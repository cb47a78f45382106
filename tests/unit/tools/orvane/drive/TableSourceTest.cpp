#include <string>

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"
#include "tools/orvane/drive/TableSource.h"

namespace {

using orvane::tool::InputLines;
using orvane::tool::InputRow;
using orvane::tool::Problems;
using orvane::tool::Profile;
using orvane::tool::TableSource;

class TableSourceTest : public testing::Test {
protected:
    TableSourceTest() { profile.inputs = {{"pitch", 1, true}, {"brakes", 2, false}}; }

    // The rows as text: the time if there is one, then ACTION=VALUE.
    std::string rowsOf(const std::string& table) {
        directory.Write("t.csv", table);
        InputLines lines("t.csv");
        Problems problems;
        TableSource source(lines, profile, problems);
        std::string text;
        while (const std::optional<InputRow> row = source.Next()) {
            text += row->seconds ? std::to_string(*row->seconds).substr(0, 4) : "";
            for (const auto& item : row->items) {
                text += " " + std::to_string(item.action) + "=" + std::to_string(item.value);
            }
            text += ";";
        }
        problemText = problemLines("t", problems);
        return text;
    }

    TemporaryDirectory directory;
    Profile profile;
    std::string problemText;
};

TEST_F(TableSourceTest, SendsEachRow) {
    EXPECT_EQ(rowsOf("pitch,brakes\n0,1\n65535,0\n"), " 1=0 2=1; 1=65535 2=0;");
    EXPECT_EQ(problemText, "");
}

TEST_F(TableSourceTest, KnowsWhenRowsAreDue) {
    EXPECT_EQ(rowsOf("brakes,time\n1,0\n0,1.25\n0,1.25\n"), "0.00 2=1;1.25 2=0;1.25 2=0;");
}

TEST_F(TableSourceTest, SendsNothingForAnEmptyField) {
    EXPECT_EQ(rowsOf("pitch,brakes\n,1\n5,\n,\n"), " 2=1; 1=5;;");
}

TEST_F(TableSourceTest, IgnoresBlanksCommentsEmptyLinesAndCarriageReturns) {
    EXPECT_EQ(rowsOf("# a table\r\n\r\n pitch , brakes\r\n# more\n 7 ,\t0\r\n\n8,0"),
              " 1=7 2=0; 1=8 2=0;");
    EXPECT_EQ(problemText, "");
}

TEST_F(TableSourceTest, TakesAnyWholeNumberThatTheProtocolCarries) {
    EXPECT_EQ(rowsOf("pitch\n-2147483648\n2147483647\n"), " 1=-2147483648; 1=2147483647;");
}

TEST_F(TableSourceTest, ReportsEachRowThatIsWrongWithItsLine) {
    EXPECT_EQ(rowsOf("time,pitch\n0,1\n0.5,0.5\n1\n1,2,3\nnow,1\n-1,1\n2,2147483648\n\"2,1\n"
                     "3,9\n2.5,9\n"),
              "0.00 1=1;3.00 1=9;");
    EXPECT_EQ(problemText,
              "t:3: \"0.5\" for \"pitch\" is not a whole number from -2147483648 to 2147483647\n"
              "t:4: 1 fields, but 2 columns\n"
              "t:5: 3 fields, but 2 columns\n"
              "t:6: \"now\" is not a time in seconds\n"
              "t:7: \"-1\" is not a time in seconds\n"
              "t:8: \"2147483648\" for \"pitch\" is not a whole number from -2147483648 to "
              "2147483647\n"
              "t:9: a quote is not closed\n"
              "t:11: 2.5 s comes after 3 s\n");
}

TEST_F(TableSourceTest, ReportsEveryColumnThatIsWrongAndReadsNoRow) {
    EXPECT_EQ(rowsOf("pitch,roll,pitch,yaw\n1,2,3,4\n"), "");
    EXPECT_EQ(problemText,
              "t:1: the profile has no input \"roll\"\n"
              "t:1: there are two columns \"pitch\"\n"
              "t:1: the profile has no input \"yaw\"\n");
}

TEST_F(TableSourceTest, ReportsATableWithoutAHeader) {
    EXPECT_EQ(rowsOf(""), "");
    EXPECT_EQ(problemText,
              "t:1: the table is empty; it begins with the names of inputs, separated by "
              "commas\n");
}

} // namespace
