#include <array>
#include <string>

#include <gtest/gtest.h>

#include "XPLMNavigation.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

class NavigationTest : public ::testing::Test {
protected:
    static std::string entry(XPLMNavFlightPlan plan, int index) {
        XPLMNavType type = 0;
        std::array<char, 256> id{};
        int altitude = 0;
        float latitude = 0;
        float longitude = 0;
        XPLMGetFMSFlightPlanEntryInfo(plan, index, &type, id.data(), nullptr, &altitude, &latitude,
                                      &longitude);
        return std::to_string(type) + " " + id.data() + " " + std::to_string(altitude) + " " +
               std::to_string(static_cast<int>(latitude)) + " " +
               std::to_string(static_cast<int>(longitude));
    }

    Simulator sim;
};

TEST_F(NavigationTest, TheDatabaseIsEmpty) {
    EXPECT_EQ(XPLMGetFirstNavAid(), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMGetNextNavAid(0), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMFindFirstNavAidOfType(xplm_Nav_VOR), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMFindLastNavAidOfType(xplm_Nav_VOR), XPLM_NAV_NOT_FOUND);
    float latitude = 47.0F;
    EXPECT_EQ(XPLMFindNavAid(nullptr, "INN", &latitude, nullptr, nullptr, xplm_Nav_NDB),
              XPLM_NAV_NOT_FOUND);
    XPLMNavType type = 7;
    std::array<char, 32> id{"former"};
    XPLMGetNavAidInfo(3, &type, &latitude, nullptr, nullptr, nullptr, nullptr, id.data(), nullptr,
                      nullptr);
    EXPECT_EQ(type, xplm_Nav_Unknown);
    EXPECT_EQ(latitude, 0.0F);
    EXPECT_STREQ(id.data(), "");
}

TEST_F(NavigationTest, EntriesOfTheFmsAreKept) {
    XPLMSetFMSEntryLatLon(1, 47.0F, 11.0F, 5000);
    EXPECT_EQ(XPLMCountFMSEntries(), 2);
    EXPECT_EQ(entry(xplm_Fpl_Pilot_Primary, 1), "2048  5000 47 11");
    EXPECT_EQ(entry(xplm_Fpl_Pilot_Primary, 0), "0  0 0 0");
    XPLMSetFMSEntryLatLon(100, 1.0F, 1.0F, 0);
    EXPECT_EQ(XPLMCountFMSEntries(), 2) << "there are 100 at most";
    XPLMSetDestinationFMSEntry(1);
    XPLMSetDisplayedFMSEntry(0);
    EXPECT_EQ(XPLMGetDestinationFMSEntry(), 1);
    EXPECT_EQ(XPLMGetDisplayedFMSEntry(), 0);
    XPLMClearFMSEntry(1);
    EXPECT_EQ(XPLMCountFMSEntries(), 0) << "empty entries at the end go";
}

TEST_F(NavigationTest, ThereAreSeveralPlans) {
    XPLMSetFMSFlightPlanEntryLatLonWithId(xplm_Fpl_CoPilot_Primary, 0, 1.0F, 2.0F, 3, "ABCDE", 3);
    EXPECT_EQ(entry(xplm_Fpl_CoPilot_Primary, 0), "2048 ABC 3 1 2");
    EXPECT_EQ(XPLMCountFMSEntries(), 0);
    XPLMSetDirectToFMSFlightPlanEntry(xplm_Fpl_CoPilot_Primary, 4);
    EXPECT_EQ(XPLMGetDestinationFMSFlightPlanEntry(xplm_Fpl_CoPilot_Primary), 4);
    EXPECT_EQ(XPLMGetDestinationFMSEntry(), 0);
}

TEST_F(NavigationTest, APlanIsLoadedAndSavedAsText) {
    const std::string text =
        "I\n1100 Version\nCYCLE 1710\nADEP KCUB\nNUMENR 2\n"
        "1 KCUB ADEP 0.000000 33.970470 -80.995247\n"
        "11 CTF DRCT 4000.000000 34.650497 -80.274918\n";
    XPLMLoadFMSFlightPlan(0, text.c_str(), static_cast<unsigned>(text.size()));
    ASSERT_EQ(XPLMCountFMSEntries(), 2);
    EXPECT_EQ(entry(0, 0), "1 KCUB 0 33 -80");
    EXPECT_EQ(entry(0, 1), "512 CTF 4000 34 -80");
    std::array<char, 1000> saved{};
    const unsigned length = XPLMSaveFMSFlightPlan(0, saved.data(), saved.size());
    XPLMLoadFMSFlightPlan(1, saved.data(), length);
    EXPECT_EQ(entry(1, 1), "512 CTF 4000 34 -80");
    EXPECT_EQ(XPLMSaveFMSFlightPlan(0, saved.data(), 5), 0U) << "it does not fit";
}

TEST_F(NavigationTest, TheGpsHasNoDestination) {
    EXPECT_EQ(XPLMGetGPSDestination(), XPLM_NAV_NOT_FOUND);
    EXPECT_EQ(XPLMGetGPSDestinationType(), xplm_Nav_Unknown);
}
