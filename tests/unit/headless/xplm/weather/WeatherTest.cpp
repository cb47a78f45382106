#include <cstddef>
#include <cstring>

#include <gtest/gtest.h>

#include "XPLMWeather.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

class WeatherTest : public ::testing::Test {
protected:
    static XPLMWeatherInfo_t windy() {
        XPLMWeatherInfo_t weather{};
        weather.structSize = sizeof weather;
        weather.wind_spd_alt = 20.0F;
        weather.radius_nm = 10.0F;
        return weather;
    }

    static int at(double latitude, XPLMWeatherInfo_t& weather) {
        weather.structSize = sizeof weather;
        return XPLMGetWeatherAtLocation(latitude, 11.0, 0.0, &weather);
    }

    Simulator sim;
    XPLMWeatherInfo_t found{};
};

TEST_F(WeatherTest, IsStandardAtFirst) {
    EXPECT_EQ(at(47.0, found), 0);
    EXPECT_EQ(found.temperature_alt, 15.0F);
    EXPECT_EQ(found.pressure_sl, 101'325.0F);
    EXPECT_EQ(found.wind_spd_alt, 0.0F);
    XPLMGetWeatherAtLocation(47.0, 11.0, 1000.0, &found);
    EXPECT_EQ(found.temperature_alt, 8.5F);
}

TEST_F(WeatherTest, WhatIsSetCountsFromTheEndOfTheUpdateAndWithinItsReach) {
    XPLMWeatherInfo_t weather = windy();
    XPLMBeginWeatherUpdate();
    XPLMSetWeatherAtLocation(47.0, 11.0, 0.0, &weather);
    EXPECT_EQ(at(47.0, found), 0);
    XPLMEndWeatherUpdate(0, 1);
    EXPECT_EQ(at(47.1, found), 1);
    EXPECT_EQ(found.wind_spd_alt, 20.0F);
    EXPECT_EQ(at(47.5, found), 0) << "thirty miles away";
    XPLMEraseWeatherAtLocation(47.0, 11.0);
    EXPECT_EQ(at(47.0, found), 0);
}

TEST_F(WeatherTest, AnUpdateReplacesWhatWasSetUnlessItIsIncremental) {
    XPLMWeatherInfo_t weather = windy();
    for (const int incremental : {1, 0}) {
        XPLMBeginWeatherUpdate();
        XPLMSetWeatherAtLocation(47.0, 11.0, 0.0, &weather);
        XPLMEndWeatherUpdate(0, 1);
        XPLMBeginWeatherUpdate();
        XPLMEndWeatherUpdate(incremental, 1);
        EXPECT_EQ(at(47.0, found), incremental);
    }
}

TEST_F(WeatherTest, ThereAreNoReports) {
    XPLMFixedString150_t report;
    std::memset(&report, 'x', sizeof report);
    XPLMGetMETARForAirport("LOWI", &report);
    EXPECT_STREQ(report.buffer, "");
}

TEST_F(WeatherTest, AnOlderStructureIsNotOverrun) {
    found.structSize = offsetof(XPLMWeatherInfo_t, age);
    found.radius_nm = 77.0F;
    XPLMGetWeatherAtLocation(47.0, 11.0, 0.0, &found);
    EXPECT_EQ(found.radius_nm, 77.0F);
    EXPECT_EQ(found.troposphere_alt, 11'000.0F);
}
