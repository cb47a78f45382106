#include <array>
#include <cstddef>

#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "headless/xplm/Simulator.h"

using headless::Simulator;

class DatarefListTest : public ::testing::Test {
protected:
    static XPLMDataRef publish(const char* name) {
        return XPLMRegisterDataAccessor(name, xplmType_Int | xplmType_Float, 1, nullptr, nullptr,
                                        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    }

    Simulator sim;
};

TEST_F(DatarefListTest, CountsAndGivesDatarefsByIndex) {
    sim.Datarefs().Define({"sim/a", xplmType_Int});
    const XPLMDataRef own = publish("plugin/a");
    ASSERT_EQ(XPLMCountDataRefs(), 2);
    std::array<XPLMDataRef, 3> handles{};
    XPLMGetDataRefsByIndex(0, 2, handles.data());
    EXPECT_EQ(handles[0], XPLMFindDataRef("sim/a"));
    EXPECT_EQ(handles[1], own);
    EXPECT_EQ(handles[2], nullptr);
    XPLMGetDataRefsByIndex(1, 2, handles.data());
    EXPECT_EQ(handles[0], own);
    EXPECT_EQ(handles[1], nullptr);
}

TEST_F(DatarefListTest, TellsWhatADatarefIs) {
    XPLMDataRefInfo_t info{};
    info.structSize = sizeof info;
    sim.Datarefs().Define({.name = "sim/a", .types = xplmType_Double, .writable = false});
    XPLMGetDataRefInfo(XPLMFindDataRef("sim/a"), &info);
    EXPECT_STREQ(info.name, "sim/a");
    EXPECT_EQ(info.type, xplmType_Double);
    EXPECT_EQ(info.writable, 0);
    EXPECT_EQ(info.owner, XPLM_PLUGIN_XPLANE);
    const XPLMPluginID plugin = sim.Plugins().AddPlugin("tests.owner");
    const headless::PluginContext::Call call(sim.Context(), plugin, "test");
    XPLMGetDataRefInfo(publish("plugin/a"), &info);
    EXPECT_EQ(info.type, xplmType_Int | xplmType_Float);
    EXPECT_EQ(info.writable, 1);
    EXPECT_EQ(info.owner, plugin);
}

TEST_F(DatarefListTest, WritesNoMoreThanTheCallersStructureHasRoomFor) {
    XPLMDataRefInfo_t info{};
    info.structSize = offsetof(XPLMDataRefInfo_t, writable);
    info.owner = 77;
    XPLMGetDataRefInfo(publish("plugin/a"), &info);
    EXPECT_EQ(info.type, xplmType_Int | xplmType_Float);
    EXPECT_EQ(info.owner, 77);
}

TEST_F(DatarefListTest, AnOrphanAndAForeignHandleAreNotGood) {
    const XPLMDataRef own = publish("plugin/a");
    EXPECT_EQ(XPLMIsDataRefGood(own), 1);
    XPLMUnregisterDataAccessor(own);
    EXPECT_EQ(XPLMIsDataRefGood(own), 0);
    publish("plugin/a");
    EXPECT_EQ(XPLMIsDataRefGood(own), 1);
    int other = 0;
    EXPECT_EQ(XPLMIsDataRefGood(&other), 0);
    EXPECT_EQ(XPLMIsDataRefGood(nullptr), 0);
}
