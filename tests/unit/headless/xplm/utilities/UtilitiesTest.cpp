#include <array>
#include <cstring>
#include <limits>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "XPLMUtilities.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/utilities/SystemFolder.h"
#include "support/TemporaryDirectory.h"

using headless::Simulator;
using ::testing::ElementsAre;
using ::testing::EndsWith;

namespace {

std::string toldError;

void onError(const char* message) {
    toldError = message;
}

} // namespace

class UtilitiesTest : public ::testing::Test {
protected:
    UtilitiesTest() { sim.Folder().Set(folder.Path("")); }

    TemporaryDirectory folder;
    Simulator sim;
};

TEST_F(UtilitiesTest, VersionsAreToldAsFarAsTheCallerWantsThem) {
    int simulator = 0;
    int sdk = 0;
    XPLMHostApplicationID host = 0;
    XPLMGetVersions(&simulator, &sdk, &host);
    EXPECT_EQ(simulator, 12140);
    EXPECT_EQ(sdk, 420);
    EXPECT_EQ(host, xplm_Host_XPlane);
    XPLMGetVersions(nullptr, nullptr, nullptr);
    EXPECT_EQ(XPLMGetLanguage(), xplm_Language_English);
    EXPECT_EQ(XPLMInitialized(), 1);
}

TEST_F(UtilitiesTest, PathsLeadIntoTheSimulatorsFolder) {
    std::array<char, 512> path{};
    XPLMGetSystemPath(path.data());
    EXPECT_EQ(path.data(), folder.Path(""));
    XPLMGetPrefsPath(path.data());
    EXPECT_EQ(path.data(), folder.Path("Output/preferences/Set X-Plane.prf"));
    EXPECT_STREQ(XPLMGetDirectorySeparator(), "/");
    EXPECT_STREQ(XPLMExtractFileAndPath(path.data()), "Set X-Plane.prf");
    EXPECT_EQ(path.data(), folder.Path("Output/preferences"));
    char bare[] = "file";
    EXPECT_STREQ(XPLMExtractFileAndPath(bare), "file");
}

TEST_F(UtilitiesTest, ListsAFolderInPiecesThatFit) {
    folder.Write("b.txt", "");
    folder.Write("a.txt", "");
    folder.Write("c.txt", "");
    std::array<char, 12> names{};
    std::array<char*, 3> indices{};
    int total = 0;
    int returned = 0;
    EXPECT_EQ(XPLMGetDirectoryContents(folder.Path("").c_str(), 0, names.data(), 12, indices.data(),
                                       3, &total, &returned),
              0);
    EXPECT_EQ(total, 3);
    ASSERT_EQ(returned, 2);
    EXPECT_STREQ(indices[0], "a.txt");
    EXPECT_STREQ(indices[1], "b.txt");
    EXPECT_EQ(XPLMGetDirectoryContents(folder.Path("").c_str(), 2, names.data(), 12, nullptr, 0,
                                       nullptr, nullptr),
              1);
    EXPECT_STREQ(names.data(), "c.txt");
    EXPECT_EQ(XPLMGetDirectoryContents(folder.Path("none").c_str(), 0, names.data(), 12, nullptr, 0,
                                       &total, &returned),
              1);
    EXPECT_EQ(total, 0);
    EXPECT_EQ(returned, 0);
}

TEST_F(UtilitiesTest, KeysHaveNames) {
    EXPECT_STREQ(XPLMGetVirtualKeyDescription('A'), "A");
    EXPECT_STREQ(XPLMGetVirtualKeyDescription(XPLM_VK_F12), "F12");
    EXPECT_STREQ(XPLMGetVirtualKeyDescription(XPLM_VK_RETURN), "Return");
    EXPECT_STREQ(XPLMGetVirtualKeyDescription(static_cast<char>(XPLM_VK_EQUAL)), "=");
    EXPECT_STREQ(XPLMGetVirtualKeyDescription(0), "");
}

TEST_F(UtilitiesTest, ASituationIsSavedAndLoaded) {
    sim.Datarefs().Define({"sim/number", xplmType_Double});
    sim.Datarefs().SetDouble("sim/number", 0.1);
    EXPECT_EQ(XPLMSaveDataFile(xplm_DataFile_Situation, "one.sit"), 1);
    sim.Datarefs().SetDouble("sim/number", 2);
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "one.sit"), 1);
    EXPECT_EQ(sim.Datarefs().GetDouble("sim/number"), 0.1);
    sim.Datarefs().SetDouble("sim/number", -std::numeric_limits<double>::infinity());
    EXPECT_EQ(XPLMSaveDataFile(xplm_DataFile_Situation, "one.sit"), 1);
    sim.Datarefs().SetDouble("sim/number", std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "one.sit"), 1);
    EXPECT_EQ(sim.Datarefs().GetDouble("sim/number"), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "none.sit"), 0);
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_ReplayMovie, "one.sit"), 0);
    folder.Write("foreign.sit", "SITUATION\n");
    EXPECT_EQ(XPLMLoadDataFile(xplm_DataFile_Situation, "foreign.sit"), 0);
    EXPECT_EQ(XPLMSaveDataFile(xplm_DataFile_Situation, "none/one.sit"), 0);
}

TEST_F(UtilitiesTest, WhoAsksIsToldOfItsErrors) {
    toldError.clear();
    XPLMCommandOnce(nullptr);
    EXPECT_EQ(toldError, "");
    XPLMSetErrorCallback(&onError);
    XPLMCommandOnce(nullptr);
    EXPECT_EQ(toldError, "XPLMCommandOnce: command: null");
    toldError.clear();
    XPLMFindCommand("no/such");
    EXPECT_EQ(toldError, "") << "an unknown name is an ordinary answer";
}

TEST_F(UtilitiesTest, WhatIsNotSimulatedIsSaidOnce) {
    XPLMCommandKeyStroke(1);
    XPLMCommandKeyStroke(2);
    EXPECT_EQ(sim.Log().Text(),
              "headless-sim: XPLMCommandKeyStroke is not simulated and answers 0: Deprecated by "
              "the SDK.\n");
}

TEST_F(UtilitiesTest, CallsFromAnotherThreadAreReportedOnceEach) {
    std::thread([] {
        XPLMGetCycleNumber();
        XPLMGetCycleNumber();
        XPLMGetElapsedTime();
    }).join();
    XPLMGetLanguage();
    EXPECT_THAT(sim.Notices().Warnings(),
                ElementsAre(EndsWith("headless_tests: XPLMGetCycleNumber was called from another "
                                     "thread; the SDK belongs to the simulator's thread"),
                            EndsWith("headless_tests: XPLMGetElapsedTime was called from another "
                                     "thread; the SDK belongs to the simulator's thread")));
}

TEST_F(UtilitiesTest, WhatIsSpokenIsKept) {
    XPLMSpeakString("gear up");
    EXPECT_EQ(sim.LastSpoken(), "gear up");
}
