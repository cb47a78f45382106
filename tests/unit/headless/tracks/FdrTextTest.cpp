#include <array>
#include <chrono>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "headless/tracks/FdrText.h"
#include "headless/tracks/FdrTrack.h"

using headless::FdrHead;
using headless::fdrHeadLines;
using headless::fdrRow;
using headless::parseFdr;
using headless::Track;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

FdrHead head() {
    return {"Aircraft/Own/My Plane.acf",
            "OE-ABC",
            45'015.9,
            std::chrono::year(2004) / 8 / 10,
            29.92,
            10.0,
            230.0,
            16.0,
            {{"sim/flaps", ""}, {"sim/gear", "int"}, {"sim/throttle[3]", ""}}};
}

std::string textOf(const FdrHead& written, const std::vector<std::string>& rows) {
    std::string text;
    for (const std::string& line : fdrHeadLines(written)) {
        text += line + "\n";
    }
    for (const std::string& row : rows) {
        text += row + "\n";
    }
    return text;
}

} // namespace

TEST(FdrTextTest, WritesKeywordsAndThenRowsInTheFormatsUnits) {
    EXPECT_EQ(textOf(head(), {fdrRow(45'015.9, {11.5, 47.5, 304.8, 90, 1.5, -2},
                                     std::array{0.25, -7.0, 1e-9})}),
              "A\n"
              "4\n"
              "ACFT, Aircraft/Own/My Plane.acf\n"
              "TAIL, OE-ABC\n"
              "TIME, 12:30:15\n"
              "DATE, 08/10/2004\n"
              "PRES, 29.92\n"
              "TEMP, 50\n"
              "WIND, 230, 16\n"
              "DREF, sim/flaps\t1.0\n"
              "DREF, sim/gear\t1.0\t// int\n"
              "DREF, sim/throttle[3]\t1.0\n"
              "12:30:15,11.5,47.5,1000,90,1.5,-2,0.25,-7,1e-09\n");
}

TEST(FdrTextTest, TimesHaveWholeSecondsAndGoOnAfterMidnight) {
    const auto timeAt = [](double seconds) { return fdrRow(seconds, {}, {}).substr(0, 8); };
    EXPECT_EQ(timeAt(0.0), "00:00:00");
    EXPECT_EQ(timeAt(3'599.999), "00:59:59");
    EXPECT_EQ(timeAt(86'399.5), "23:59:59");
    EXPECT_EQ(timeAt(86'400.0), "00:00:00");
    EXPECT_EQ(timeAt(86'461.0), "00:01:01");
}

TEST(FdrTextTest, NumbersHaveNoMoreDigitsThanTheyNeed) {
    const double single = 0.1F;
    EXPECT_EQ(fdrRow(0, {single, -0.1, 0.3048, 359.9F, -0.0, 0},
                     std::array{1'000'000.0, 16'777'217.0, -2'147'483'648.0, 1e-6, 3e38}),
              "00:00:00,0.1,-0.1,1,359.9,-0,0,1000000,16777217,-2147483648,0.000001,3e+38");
    EXPECT_EQ(fdrRow(0, {0, 0, 1500, 0, 0, 0}, {}), "00:00:00,0,0,4921.2598,0,0,0");
}

TEST(FdrTextTest, ReadsBackTheSame) {
    constexpr float kLeast = std::numeric_limits<float>::denorm_min();
    constexpr float kMost = std::numeric_limits<float>::max();
    const double third = 1.0 / 3.0;
    const Track track = parseFdr(
        textOf(head(),
               {fdrRow(86'399, {11.34F, 47.26, 304.8, 1e-7, 359, -2},
                       std::array<double, 3>{kLeast, 7, -0.1F}),
                fdrRow(86'400, {third, 0, 0, 0, 0, 0}, std::array<double, 3>{kMost, -7, 0})}),
        "a.fdr");
    EXPECT_THAT(track.warnings, IsEmpty());
    ASSERT_EQ(track.columns.size(), 10U);
    EXPECT_EQ(track.columns[7].name, "sim/flaps");
    EXPECT_EQ(track.columns[8].name, "sim/gear");
    EXPECT_EQ(track.columns[9].name, "sim/throttle[3]");
    ASSERT_EQ(track.rows.size(), 2U);
    EXPECT_EQ(track.rows[1].seconds, 1.0);
    EXPECT_EQ(track.rows[1].numbers[0], third);
    const auto floatsOf = [](const headless::TrackRow& row) {
        return std::vector<float>(row.numbers.begin(), row.numbers.end());
    };
    EXPECT_THAT(floatsOf(track.rows[0]),
                ElementsAre(11.34F, 47.26F, 304.8F, 1e-7F, 359, -2, 86'399, kLeast, 7, -0.1F));
    EXPECT_THAT(floatsOf(track.rows[1]), ElementsAre(1.0F / 3.0F, 0, 0, 0, 0, 0, 0, kMost, -7, 0));
    EXPECT_EQ(track.aircraft, "My Plane");
    std::vector<std::string> settings;
    for (const headless::TrackSetting& setting : track.settings) {
        settings.push_back(setting.dataref + "=" + setting.value);
    }
    EXPECT_THAT(settings,
                ElementsAre("sim/aircraft/view/acf_tailnum=OE-ABC", "sim/time/zulu_time_sec=45015",
                            "sim/weather/barometer_sealevel_inhg=29.92",
                            "sim/weather/temperature_sealevel_c=10",
                            "sim/weather/wind_direction_degt=230", "sim/weather/wind_speed_kt=16"));
}
