#include <cstdlib>

#include <gtest/gtest.h>

#include "support/PseudoTerminal.h"
#include "tools/orvane/terminal/WatchedNumber.h"
#include "tools/orvane/watch/WatchTable.h"

using orvane::tool::DatarefArgument;
using orvane::tool::parseDatarefArguments;
using orvane::tool::Terminal;
using orvane::tool::WatchedNumber;
using orvane::tool::WatchTable;
using orvane::velmar::Value;

namespace {

using Lines = std::vector<std::string>;

class WatchTableTest : public testing::Test {
protected:
    void see(const std::vector<DatarefArgument>& datarefs, const std::vector<Value>& values) {
        table.See(datarefs, values, WatchedNumber::TimePoint());
    }

    Lines lines(std::size_t columns, std::size_t rows = 24, std::size_t first = 1) const {
        terminal.Resize(columns, rows);
        return table.Lines("title", Terminal(terminal.FileDescriptor()), first);
    }

    WatchTable table;
    PseudoTerminal terminal;
};

TEST_F(WatchTableTest, ShowsValueUnitExtremesAndCurve) {
    const auto datarefs = parseDatarefArguments({"sim/speed:float@kt", "sim/gear:int"});
    see(datarefs, {Value(100.5F), Value(std::int32_t{1})});
    see(datarefs, {Value(99.0F), Value(std::int32_t{1})});
    see(datarefs, {Value(120.25F), Value(std::int32_t{1})});
    EXPECT_EQ(lines(100), (Lines{
                              "title",
                              "NAME         VALUE  UNIT  MIN     MAX",
                              "sim/speed * 120.25  kt     99  120.25  __^",
                              "sim/gear         1          1       1  ---",
                          }));
}

TEST_F(WatchTableTest, ShowsEachElementOfAnArray) {
    const auto datarefs = parseDatarefArguments({"a:int[2]"});
    see(datarefs, {Value(std::vector<std::int32_t>{1, 2})});
    see(datarefs, {Value(std::vector<std::int32_t>{1, -3})});
    EXPECT_EQ(lines(100), (Lines{
                              "title",
                              "NAME   VALUE  UNIT  MIN  MAX",
                              "a[0]       1          1    1  --",
                              "a[1] *    -3         -3    2  ^_",
                          }));
}

TEST_F(WatchTableTest, KeepsTheColumnsUnderEachOtherWithAnyUnit) {
    const auto datarefs =
        parseDatarefArguments({"sim/oat:int@°C", "sim/flow:int@速度", "sim/speed:int@kt"});
    const std::vector<Value> ones(3, Value(std::int32_t{1}));
    see(datarefs, ones);
    EXPECT_EQ(lines(100), (Lines{
                              "title",
                              "NAME        VALUE  UNIT  MIN  MAX",
                              "sim/oat         1  °C      1    1  -",
                              "sim/flow        1  速度    1    1  -",
                              "sim/speed       1  kt      1    1  -",
                          }));
}

TEST_F(WatchTableTest, CutsUnitsBetweenCharacters) {
    const auto datarefs = parseDatarefArguments({"sim/a/name/of/some/length:int@速度速度"});
    see(datarefs, {Value(std::int32_t{1})});
    EXPECT_EQ(lines(42)[2], "../a/name/of/some/length       1  速度速");
}

TEST_F(WatchTableTest, EmphasisesWhatHasChanged) {
    ::setenv("NO_COLOR", "", 1);
    const auto datarefs = parseDatarefArguments({"name:int"});
    see(datarefs, {Value(std::int32_t{1})});
    see(datarefs, {Value(std::int32_t{2})});
    const Lines shown = lines(100);
    EXPECT_EQ(shown[1], "\x1b[1mNAME   VALUE  UNIT  MIN  MAX\x1b[0m");
    EXPECT_EQ(shown[2], "name \x1b[1m*     2\x1b[0m          1    2  _^");
}

TEST_F(WatchTableTest, CutsNamesAtTheirBeginningToKeepTheCurve) {
    const auto datarefs = parseDatarefArguments({"sim/a/very/long/way/to/the/name/of/this:int"});
    for (int i = 0; i < 20; ++i) {
        see(datarefs, {Value(std::int32_t{i})});
    }
    const Lines shown = lines(64);
    EXPECT_EQ(shown[2], "..ong/way/to/the/name/of/this *    19          0   19  __----^^");
    for (const std::string& line : shown) {
        EXPECT_LE(line.size(), 63U) << line;
    }
}

TEST_F(WatchTableTest, IsNeverWiderThanTheTerminal) {
    const auto datarefs = parseDatarefArguments({"sim/a/very/long/way/to/the/name/of/this:float"});
    see(datarefs, {Value(1.5F)});
    for (std::size_t columns = 10; columns <= 60; columns += 10) {
        for (const std::string& line : lines(columns)) {
            EXPECT_LT(line.size(), columns) << line;
        }
    }
}

class TallWatchTableTest : public WatchTableTest {
protected:
    TallWatchTableTest() {
        see(parseDatarefArguments({"a:int[30]"}), {Value(std::vector<std::int32_t>(30))});
    }

    // The names of the rows in a terminal of ten lines, and the text below them.
    std::string shown(std::size_t first) const {
        const Lines all = lines(80, 10, first);
        EXPECT_EQ(all.size(), 9U);
        const auto nameOf = [](const std::string& line) { return line.substr(0, line.find(' ')); };
        return nameOf(all[2]) + " to " + nameOf(all[7]) + " | " + all[8];
    }
};

TEST_F(TallWatchTableTest, SaysWhichRowsItShows) {
    EXPECT_EQ(shown(1), "a[0] to a[5] | rows 1 to 6 of 30; --first 7 shows the next");
    EXPECT_EQ(shown(7), "a[6] to a[11] | rows 7 to 12 of 30; --first 13 shows the next");
}

TEST_F(TallWatchTableTest, ShowsTheLastRowsWhereThereAreNotSoMany) {
    EXPECT_EQ(shown(25), "a[24] to a[29] | rows 25 to 30 of 30");
    EXPECT_EQ(shown(1000), "a[24] to a[29] | rows 25 to 30 of 30");
}

TEST_F(TallWatchTableTest, ShowsAllRowsWhereTheyFit) {
    EXPECT_EQ(lines(80, 33).size(), 32U);
    EXPECT_EQ(lines(80, 33, 7), lines(80, 33));
}

} // namespace
