#include <chrono>
#include <cstdlib>
#include <limits>
#include <optional>

#include <gtest/gtest.h>

#include "support/PseudoTerminal.h"
#include "tools/orvane/drive/DriveTable.h"
#include "tools/orvane/drive/ProfileReader.h"

using orvane::tarnel::Answer;
using orvane::tarnel::Item;
using orvane::tarnel::Value;
using orvane::tool::DriveTable;
using orvane::tool::Problems;
using orvane::tool::Profile;
using orvane::tool::Terminal;

namespace {

using Lines = std::vector<std::string>;

constexpr const char* kProfile = R"(
[[input]]
name = "pitch"
dataref = "sim/pitch"
type = "float"
scaling = { float_range = [-1, 1] }
[[input]]
name = "throttle"
dataref = "sim/throttle"
type = "float"
element = 1
[[input]]
name = "gear"
dataref = "sim/gear"
type = "int"
[[input]]
name = "flaps"
command = "sim/flaps"
[[input]]
name = "brakes"
command = "sim/brakes"
hold = true
[[output]]
name = "speed"
dataref = "sim/speed"
type = "float"
unit = "kt"
[[output]]
name = "throttle"
dataref = "sim/throttle"
type = "float"
count = 2
[[output]]
name = "pitch"
dataref = "sim/pitch"
type = "float"
[[output]]
name = "brakes"
command = "kyr/brakes"
)";

class DriveTableTest : public testing::Test {
protected:
    DriveTableTest() { read(kProfile); }

    void read(const std::string& text) {
        Problems problems;
        profile = readProfile(text, problems);
        EXPECT_EQ(problemLines("p", problems), "");
        table.emplace(profile);
    }

    // The values in the order of the profile.
    void see(const std::vector<Item>& items, const std::vector<Value>& values) {
        Answer answer;
        for (std::size_t i = 0; i < values.size(); ++i) {
            answer.outputs.push_back({profile.outputs[i].id, values[i]});
        }
        table->See(items, answer, now);
        now += std::chrono::milliseconds(200);
    }

    Lines lines(std::size_t columns, std::size_t rows = 24) const {
        terminal.Resize(columns, rows);
        return table->Lines("title", Terminal(terminal.FileDescriptor()));
    }

    using Floats = std::vector<float>;

    Profile profile;
    std::optional<DriveTable> table;
    orvane::tool::WatchedNumber::TimePoint now;
    PseudoTerminal terminal;
};

TEST_F(DriveTableTest, ShowsWhatGoesInBesideWhatComesBack) {
    see({{1, 0}, {2, 32768}, {3, 7}, {4, 0}, {5, 0}},
        {Value(116.5F), Value(Floats{0, 0.25F}), Value(-1.0F), Value(false)});
    see({{1, 65535}, {4, 1}, {5, 1}},
        {Value(99.0F), Value(Floats{0, 0.5F}), Value(0.5F), Value(true)});
    EXPECT_EQ(
        lines(100),
        (Lines{
            "title",
            "NAME            IN                  BACK                        HOW",
            "pitch        65535 ##########      0.500  _^                    -1..1, float range",
            "throttle[0]                        0.000  --",
            "throttle[1]  32768 #####.....      0.500  _^                    0..1, float[1]",
            "gear             7                                              unscaled, int",
            "flaps            1 pressed                                      command",
            "brakes           1 held             down  _^                    command, held",
            "speed                             99.000  ^_                    kt",
        }));
}

TEST_F(DriveTableTest, SaysNothingOfAnInputBeforeItIsSent) {
    see({}, {Value(1.0F), Value(Floats{0, 0}), Value(0.0F), Value(false)});
    EXPECT_EQ(lines(100)[2],
              "pitch                              0.000  -                     -1..1, float range");
    EXPECT_EQ(lines(100)[7],
              "brakes                                 -  -                     command, held");
}

TEST_F(DriveTableTest, MarksWhatIsDown) {
    ::setenv("NO_COLOR", "", 1);
    see({{5, 1}, {4, 1}}, {Value(1.0F), Value(Floats{0, 0}), Value(0.0F), Value(true)});
    EXPECT_TRUE(lines(100)[1].starts_with("\x1b[1mNAME "));
    EXPECT_TRUE(lines(100)[6].starts_with("flaps            1 \x1b[1mpressed   \x1b[0m"))
        << lines(100)[6];
    EXPECT_TRUE(lines(100)[7].starts_with("brakes           1 \x1b[1mheld      \x1b[0m"))
        << lines(100)[7];
    see({{5, 0}, {4, 0}}, {Value(1.0F), Value(Floats{0, 0}), Value(0.0F), Value(false)});
    EXPECT_EQ(lines(100)[7].find('\x1b'), std::string::npos) << lines(100)[7];
}

TEST_F(DriveTableTest, DrawsWithUnicodeWhereTheLocaleHasIt) {
    ::setenv("LANG", "C.UTF-8", 1);
    see({{1, 16384}}, {Value(1.0F), Value(Floats{0, 0}), Value(0.0F), Value(true)});
    EXPECT_EQ(lines(100)[2],
              "pitch        16384 ██▌·······      0.000  ▅                     -1..1, float range");
}

TEST_F(DriveTableTest, ShowsNumbersOfAnySizeInTheSameWidth) {
    constexpr float kHuge = std::numeric_limits<float>::max();
    see({{1, -5}}, {Value(123456.0F), Value(Floats{1e-5F, kHuge}), Value(-99.9996F), Value(false)});
    const Lines shown = lines(100);
    EXPECT_EQ(shown[2].substr(0, 41), "pitch           -5 ..........   -100.000 ");
    EXPECT_EQ(shown[3].substr(0, 41), "throttle[0]                    1.000e-05 ");
    EXPECT_EQ(shown[4].substr(0, 41), "throttle[1]                    3.403e+38 ");
    EXPECT_EQ(shown[8].substr(0, 41), "speed                           123456.0 ");
}

TEST_F(DriveTableTest, DropsTheCurveFirstAndIsNeverWiderThanTheTerminal) {
    for (int i = 0; i < 20; ++i) {
        see({{1, 65535}},
            {Value(1.0F), Value(Floats{0, 0}), Value(0.0F + static_cast<float>(i)), Value(false)});
    }
    EXPECT_EQ(lines(67)[2], "pitch        65535 ##########     19.000  _--^  -1..1, float range");
    EXPECT_EQ(lines(66)[2], "pitch        65535 ##########     19.000  -1..1, float range");
    EXPECT_EQ(lines(50)[2], "pitch        65535 ##########     19.000  -1..1,");
    for (std::size_t columns = 10; columns <= 100; ++columns) {
        for (const std::string& line : lines(columns)) {
            EXPECT_LT(line.size(), columns) << line;
        }
    }
}

TEST_F(DriveTableTest, SaysHowManyRowsDoNotFit) {
    read("[[output]]\nname = \"a\"\ndataref = \"sim/a\"\ntype = \"int\"\ncount = 1000000\n");
    see({}, {Value(std::vector<std::int32_t>(1'000'000, 3))});
    EXPECT_EQ(lines(80, 10).size(), 9U);
    EXPECT_EQ(lines(80, 10)[2], "a[0]                              3  -");
    EXPECT_EQ(lines(80, 10)[8], "999994 more rows do not fit");
}

TEST_F(DriveTableTest, ShowsAnInputWhoseElementIsNotReportedInTheFirstRowOfItsName) {
    read(
        "[[input]]\nname = \"a\"\ndataref = \"sim/a\"\ntype = \"int\"\nelement = 7\n"
        "[[output]]\nname = \"a\"\ndataref = \"sim/a\"\ntype = \"int\"\ncount = 2\nfirst = 3\n");
    see({{1, 5}}, {Value(std::vector<std::int32_t>{8, 9})});
    EXPECT_EQ(lines(80)[2],
              "a[3]      5                     8  -                     unscaled, int[7]");
    EXPECT_EQ(lines(80)[3], "a[4]                            9  -");
}

} // namespace
