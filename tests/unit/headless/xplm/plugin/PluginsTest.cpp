// Plugins among themselves, as the SDK's functions show them.

#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/plugin/Features.h"

using headless::PluginContext;
using headless::Simulator;

namespace {

float countUp(float /*sinceCall*/, float /*sinceLoop*/, int /*counter*/, void* refcon) {
    ++*static_cast<int*>(refcon);
    return -1.0F;
}

void list(const char* name, void* refcon) {
    static_cast<std::vector<std::string>*>(refcon)->push_back(name);
}

} // namespace

class PluginsTest : public ::testing::Test {
protected:
    XPLMPluginID add(const std::string& signature) {
        return sim.Plugins().AddPlugin(
            signature, {.receive =
                            [this, signature](XPLMPluginID from, int message, void* /*parameter*/) {
                                received.push_back(signature + " " + std::to_string(message) +
                                                   " from " + std::to_string(from) + " as " +
                                                   std::to_string(XPLMGetMyID()));
                            },
                        .enable = [this] { return agrees; }});
    }

    Simulator sim;
    bool agrees = true;
    std::vector<std::string> received;
};

TEST_F(PluginsTest, AreCountedAndDescribed) {
    const XPLMPluginID one = add("tests.one");
    const XPLMPluginID two = add("tests.two");
    sim.Plugins().Describe(two, {"Two", "tests.two", "The second", "/plugins/two.xpl"});
    ASSERT_EQ(XPLMCountPlugins(), 2);
    EXPECT_EQ(XPLMGetNthPlugin(0), one);
    EXPECT_EQ(XPLMGetNthPlugin(1), two);
    EXPECT_EQ(XPLMGetNthPlugin(2), XPLM_NO_PLUGIN_ID);
    EXPECT_EQ(XPLMFindPluginByPath("/plugins/two.xpl"), two);
    EXPECT_EQ(XPLMFindPluginByPath("/plugins/none.xpl"), XPLM_NO_PLUGIN_ID);
    std::array<char, 256> name{};
    std::array<char, 256> path{};
    std::array<char, 256> description{};
    XPLMGetPluginInfo(two, name.data(), path.data(), nullptr, description.data());
    EXPECT_STREQ(name.data(), "Two");
    EXPECT_STREQ(path.data(), "/plugins/two.xpl");
    EXPECT_STREQ(description.data(), "The second");
    XPLMGetPluginInfo(99, name.data(), nullptr, nullptr, nullptr);
    EXPECT_STREQ(name.data(), "");
}

TEST_F(PluginsTest, MessagesCarryTheSendersIdAndMinusOneIsEverybody) {
    const XPLMPluginID one = add("one");
    const XPLMPluginID two = add("two");
    const std::string oneId = std::to_string(one);
    const std::string twoId = std::to_string(two);
    const PluginContext::Call call(sim.Context(), one, "test");
    XPLMSendMessageToPlugin(two, 1000, nullptr);
    XPLMSendMessageToPlugin(XPLM_NO_PLUGIN_ID, 1001, nullptr);
    EXPECT_EQ(received, (std::vector<std::string>{"two 1000 from " + oneId + " as " + twoId,
                                                  "one 1001 from " + oneId + " as " + oneId,
                                                  "two 1001 from " + oneId + " as " + twoId}));
    EXPECT_EQ(XPLMGetMyID(), one);
}

TEST_F(PluginsTest, ADisabledPluginGetsNothing) {
    const XPLMPluginID one = add("one");
    int calls = 0;
    {
        const PluginContext::Call call(sim.Context(), one, "test");
        XPLMRegisterFlightLoopCallback(&countUp, -1.0F, &calls);
    }
    sim.RunFrame(0.1);
    EXPECT_EQ(calls, 1);
    XPLMDisablePlugin(one);
    EXPECT_EQ(XPLMIsPluginEnabled(one), 0);
    sim.RunFrame(0.1);
    XPLMSendMessageToPlugin(one, 1000, nullptr);
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(received.empty());
    EXPECT_EQ(XPLMEnablePlugin(one), 1);
    sim.RunFrame(0.1);
    EXPECT_EQ(calls, 2);
}

TEST_F(PluginsTest, ADisabledPluginsDatarefReadsZeroAndDropsWrites) {
    const XPLMPluginID one = add("one");
    int value = 5;
    {
        const PluginContext::Call call(sim.Context(), one, "test");
        XPLMRegisterDataAccessor(
            "one/value", xplmType_Int, 1, [](void* refcon) { return *static_cast<int*>(refcon); },
            [](void* refcon, int written) { *static_cast<int*>(refcon) = written; }, nullptr,
            nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &value,
            &value);
    }
    const XPLMDataRef handle = XPLMFindDataRef("one/value");
    EXPECT_EQ(XPLMGetDatai(handle), 5);
    XPLMDisablePlugin(one);
    EXPECT_EQ(XPLMGetDatai(handle), 0);
    XPLMSetDatai(handle, 6);
    EXPECT_EQ(value, 5);
    XPLMEnablePlugin(one);
    EXPECT_EQ(XPLMGetDatai(handle), 5);
}

TEST_F(PluginsTest, APluginMayRefuseToBeEnabled) {
    const XPLMPluginID one = add("one");
    XPLMDisablePlugin(one);
    agrees = false;
    EXPECT_EQ(XPLMEnablePlugin(one), 0);
    EXPECT_EQ(XPLMEnablePlugin(99), 0);
}

TEST_F(PluginsTest, EachSwitchesFeaturesForItself) {
    const XPLMPluginID one = add("one");
    EXPECT_EQ(XPLMHasFeature("XPLM_USE_NATIVE_PATHS"), 1);
    EXPECT_EQ(XPLMHasFeature("XPLM_NONE"), 0);
    const PluginContext::Call call(sim.Context(), one, "test");
    EXPECT_EQ(XPLMIsFeatureEnabled("XPLM_USE_NATIVE_PATHS"), 0);
    XPLMEnableFeature("XPLM_USE_NATIVE_PATHS", 1);
    EXPECT_EQ(XPLMIsFeatureEnabled("XPLM_USE_NATIVE_PATHS"), 1);
    {
        const PluginContext::Call other(sim.Context(), add("two"), "test");
        EXPECT_EQ(XPLMIsFeatureEnabled("XPLM_USE_NATIVE_PATHS"), 0);
    }
    XPLMEnableFeature("XPLM_USE_NATIVE_PATHS", 0);
    EXPECT_EQ(XPLMIsFeatureEnabled("XPLM_USE_NATIVE_PATHS"), 0);
    std::vector<std::string> names;
    XPLMEnumerateFeatures(&list, &names);
    EXPECT_EQ(names, (std::vector<std::string>{"XPLM_WANTS_REFLECTIONS", "XPLM_USE_NATIVE_PATHS",
                                               "XPLM_USE_NATIVE_WIDGET_WINDOWS",
                                               "XPLM_WANTS_DATAREF_NOTIFICATIONS"}));
}

TEST_F(PluginsTest, WhoWantsToIsToldOfNewDatarefs) {
    const XPLMPluginID one = add("one");
    add("two");
    const std::string id = std::to_string(one);
    {
        const PluginContext::Call call(sim.Context(), one, "test");
        XPLMEnableFeature("XPLM_WANTS_DATAREF_NOTIFICATIONS", 1);
    }
    sim.Datarefs().Define({"sim/a", xplmType_Int});
    sim.RunFrame(0.1);
    sim.RunFrame(0.1);
    EXPECT_EQ(received, (std::vector<std::string>{"one 114 from 0 as " + id}));
}

TEST_F(PluginsTest, AReloadIsLeftToTheHost) {
    EXPECT_FALSE(sim.Plugins().TakeReloadRequest());
    XPLMReloadPlugins();
    EXPECT_TRUE(sim.Plugins().TakeReloadRequest());
    EXPECT_FALSE(sim.Plugins().TakeReloadRequest());
}
