// Nulls where the SDK needs something: harmless, and reported to the plugin's author.

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "XPLMDisplay.h"
#include "XPLMInstance.h"
#include "XPLMPlugin.h"
#include "XPLMScenery.h"
#include "XPLMUtilities.h"
#include "XPLMWeather.h"
#include "headless/xplm/Simulator.h"

using headless::PluginContext;
using headless::Simulator;

struct NullCall {
    const char* function;
    std::function<void()> call;
};

class NullArgumentsTest : public ::testing::TestWithParam<NullCall> {
protected:
    Simulator sim;
};

TEST_P(NullArgumentsTest, AreHarmlessAndABreachOfTheRules) {
    const XPLMPluginID plugin = sim.Plugins().AddLoaded("/plugins/some.xpl", {});
    const PluginContext::Call call(sim.Context(), plugin, "test");
    GetParam().call();
    GetParam().call();
    ASSERT_EQ(sim.Notices().Warnings().size(), 1U) << sim.Log().Text();
    const std::string expected = std::string("/plugins/some.xpl: ") + GetParam().function + ": ";
    EXPECT_TRUE(sim.Notices().Warnings().front().starts_with(expected)) << sim.Log().Text();
    EXPECT_NE(sim.Notices().Warnings().front().find(": null"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Sdk, NullArgumentsTest,
    ::testing::Values(
        NullCall{"XPLMGetSystemPath", [] { XPLMGetSystemPath(nullptr); }},
        NullCall{"XPLMGetPrefsPath", [] { XPLMGetPrefsPath(nullptr); }},
        NullCall{"XPLMExtractFileAndPath", [] { XPLMExtractFileAndPath(nullptr); }},
        NullCall{"XPLMFindSymbol", [] { XPLMFindSymbol(nullptr); }},
        NullCall{"XPLMSpeakString", [] { XPLMSpeakString(nullptr); }},
        NullCall{"XPLMGetDataRefsByIndex", [] { XPLMGetDataRefsByIndex(0, 1, nullptr); }},
        NullCall{"XPLMGetDataRefInfo", [] { XPLMGetDataRefInfo(nullptr, nullptr); }},
        NullCall{"XPLMEnumerateFeatures", [] { XPLMEnumerateFeatures(nullptr, nullptr); }},
        NullCall{"XPLMGetAllMonitorBoundsOS", [] { XPLMGetAllMonitorBoundsOS(nullptr, nullptr); }},
        NullCall{"XPLMLoadObject", [] { XPLMLoadObject(nullptr); }},
        NullCall{"XPLMLoadObjectAsync", [] { XPLMLoadObjectAsync("a.obj", nullptr, nullptr); }},
        NullCall{"XPLMGetWeatherAtLocation",
                 [] { XPLMGetWeatherAtLocation(0.0, 0.0, 0.0, nullptr); }},
        NullCall{"XPLMSetWeatherAtLocation",
                 [] { XPLMSetWeatherAtLocation(0.0, 0.0, 0.0, nullptr); }},
        NullCall{"XPLMDestroyInstance", [] { XPLMDestroyInstance(nullptr); }},
        NullCall{
            "XPLMGetDirectoryContents",
            [] { XPLMGetDirectoryContents(nullptr, 0, nullptr, 0, nullptr, 0, nullptr, nullptr); }},
        NullCall{"XPLMDebugString", [] { XPLMDebugString(nullptr); }},
        NullCall{"XPLMFindDataRef", [] { XPLMFindDataRef(nullptr); }},
        NullCall{"XPLMFindCommand", [] { XPLMFindCommand(nullptr); }}),
    [](const auto& tested) { return std::string(tested.param.function); });
