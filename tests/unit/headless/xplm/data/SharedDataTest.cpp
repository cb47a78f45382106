#include <array>
#include <string>

#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

namespace {

void countUp(void* refcon) {
    ++*static_cast<int*>(refcon);
}

void unshare(void* refcon) {
    XPLMUnshareData("shared/number", xplmType_Int, &countUp, refcon);
}

} // namespace

class SharedDataTest : public ::testing::Test {
protected:
    Simulator sim;
    int changes = 0;
};

TEST_F(SharedDataTest, IsADatarefThatAllMayWriteAndIsTold) {
    EXPECT_EQ(XPLMShareData("shared/number", xplmType_Int, &countUp, &changes), 1);
    const XPLMDataRef handle = XPLMFindDataRef("shared/number");
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(XPLMCanWriteDataRef(handle), 1);
    XPLMSetDatai(handle, 7);
    EXPECT_EQ(XPLMGetDatai(handle), 7);
    EXPECT_EQ(changes, 1);
}

TEST_F(SharedDataTest, IsMadeOnceAndRefusedWithAnotherType) {
    EXPECT_EQ(XPLMShareData("shared/number", xplmType_Int, nullptr, nullptr), 1);
    EXPECT_EQ(XPLMShareData("shared/number", xplmType_Int, &countUp, &changes), 1);
    EXPECT_EQ(XPLMShareData("shared/number", xplmType_Float, &countUp, &changes), 0);
    XPLMSetDatai(XPLMFindDataRef("shared/number"), 1);
    EXPECT_EQ(changes, 1);
}

TEST_F(SharedDataTest, ANameOfTheSimulatorsOwnIsRefused) {
    sim.Datarefs().Define({"sim/a", xplmType_Int});
    EXPECT_EQ(XPLMShareData("sim/a", xplmType_Int, nullptr, nullptr), 0);
}

TEST_F(SharedDataTest, APluginThatUnsharesIsNoLongerNotified) {
    XPLMShareData("shared/number", xplmType_Int, &countUp, &changes);
    EXPECT_EQ(XPLMUnshareData("shared/number", xplmType_Int, &countUp, &changes), 1);
    EXPECT_EQ(XPLMUnshareData("shared/number", xplmType_Int, &countUp, &changes), 0);
    XPLMSetDatai(XPLMFindDataRef("shared/number"), 1);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(XPLMGetDatai(XPLMFindDataRef("shared/number")), 1);
}

TEST_F(SharedDataTest, AnArrayIsAsLongAsItWasWritten) {
    XPLMShareData("shared/floats", xplmType_FloatArray, nullptr, nullptr);
    const XPLMDataRef handle = XPLMFindDataRef("shared/floats");
    EXPECT_EQ(XPLMGetDatavf(handle, nullptr, 0, 0), 0);
    std::array<float, 2> values{1.5F, 2.5F};
    XPLMSetDatavf(handle, values.data(), 1, 2);
    std::array<float, 4> read{9, 9, 9, 9};
    EXPECT_EQ(XPLMGetDatavf(handle, read.data(), 0, 4), 3);
    EXPECT_EQ(read, (std::array<float, 4>{0, 1.5F, 2.5F, 9}));
}

TEST_F(SharedDataTest, TextIsShared) {
    XPLMShareData("shared/text", xplmType_Data, nullptr, nullptr);
    const XPLMDataRef handle = XPLMFindDataRef("shared/text");
    std::string text = "hello";
    XPLMSetDatab(handle, text.data(), 0, 5);
    std::string read(5, '?');
    EXPECT_EQ(XPLMGetDatab(handle, read.data(), 0, 5), 5);
    EXPECT_EQ(read, "hello");
}

TEST_F(SharedDataTest, WhoIsGoneIsNotTold) {
    XPLMShareData("shared/number", xplmType_Int, &unshare, &changes);
    XPLMShareData("shared/number", xplmType_Int, &countUp, &changes);
    XPLMSetDatai(XPLMFindDataRef("shared/number"), 1);
    EXPECT_EQ(changes, 0);
}
