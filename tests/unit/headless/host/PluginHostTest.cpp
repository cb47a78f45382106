#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "XPLMPlugin.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "headless/host/PluginHost.h"
#include "support/TemporaryDirectory.h"
#include "support/TextOf.h"

using headless::PluginError;
using headless::PluginHost;
using headless::Simulator;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

class PluginHostTest : public ::testing::Test {
protected:
    Simulator sim;
};

TEST_F(PluginHostTest, TakesAPluginThroughItsLife) {
    PluginHost host(sim, FAKE_PLUGIN);
    host.Start();
    host.Enable();
    host.SendMessage(XPLM_MSG_PLANE_LOADED, nullptr);
    host.SendMessage(103, &sim);
    host.Disable();
    host.Stop();
    const auto lines = sim.Log().Lines();
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[0], "start");
    EXPECT_EQ(lines[1], "enable");
    EXPECT_EQ(lines[2], "message 102 0 from 0");
    EXPECT_THAT(lines[3], HasSubstr("message 103 "));
    EXPECT_EQ(lines[4], "disable");
    EXPECT_EQ(lines[5], "stop");
    EXPECT_TRUE(host.Unload());
}

TEST_F(PluginHostTest, APluginThatDisablesItselfWhileItIsDisabledIsDisabledOnce) {
    PluginHost host(sim, "linked",
                    {.start = [](char*, char*, char*) { return 1; },
                     .stop = [] {},
                     .enable = [] { return 1; },
                     .disable =
                         [] {
                             XPLMDebugString("disable\n");
                             XPLMDisablePlugin(XPLMGetMyID());
                         },
                     .receiveMessage = [](XPLMPluginID, int, void*) {}});
    host.Start();
    host.Enable();
    host.Disable();
    EXPECT_EQ(sim.Log().Lines(), std::vector<std::string>{"disable"});
}

TEST_F(PluginHostTest, KnowsThePluginsTextsAndSignature) {
    PluginHost host(sim, FAKE_PLUGIN);
    host.Start();
    EXPECT_EQ(host.Texts().name, "Fake");
    EXPECT_EQ(host.Texts().signature, "headless.tests.fake");
    EXPECT_EQ(host.Texts().description, "A plugin for tests.");
    EXPECT_NE(XPLMFindPluginBySignature("headless.tests.fake"), XPLM_NO_PLUGIN_ID);
    host.Stop();
    EXPECT_EQ(XPLMFindPluginBySignature("headless.tests.fake"), XPLM_NO_PLUGIN_ID);
}

TEST_F(PluginHostTest, APluginInTheProcessHasTheSameLife) {
    PluginHost host(sim, "linked",
                    {.start =
                         [](char* name, char* /*signature*/, char* /*description*/) {
                             XPLMDebugString("start\n");
                             name[0] = 'L';
                             return 1;
                         },
                     .stop = [] { XPLMDebugString("stop\n"); },
                     .enable = [] { return 1; },
                     .disable = [] { XPLMDebugString("disable\n"); },
                     .receiveMessage =
                         [](XPLMPluginID /*from*/, int message, void* /*parameter*/) {
                             XPLMDebugString((std::to_string(message) + "\n").c_str());
                         }});
    host.Start();
    host.Enable();
    EXPECT_EQ(host.Texts().name, "L");
    EXPECT_EQ(host.Texts().path, "linked");
    host.SendMessage(XPLM_MSG_PLANE_LOADED, nullptr);
    EXPECT_TRUE(host.Unload());
    EXPECT_THAT(sim.Log().Lines(), testing::ElementsAre("start", "102", "disable", "stop"));
    EXPECT_EQ(textOf<PluginError>([&] { host.Start(); }), "linked: the plugin is not loaded");
}

TEST_F(PluginHostTest, OnlyALibraryThatIsLoadedCanBeRedirected) {
    PluginHost linked(sim, "linked", headless::PluginEntryPoints{});
    linked.Redirect("XPLMGetCycleNumber", nullptr);
    PluginHost loaded(sim, FAKE_PLUGIN);
    loaded.Unload();
    loaded.Redirect("XPLMGetCycleNumber", nullptr);
    EXPECT_EQ(XPLMGetCycleNumber(), 0);
}

TEST_F(PluginHostTest, WhatThePluginRegisteredWorksUntilItIsStopped) {
    PluginHost host(sim, FAKE_PLUGIN);
    host.Start();
    host.Enable();
    sim.RunFrame(0.1);
    sim.RunFrame(0.1);
    EXPECT_EQ(sim.Datarefs().GetInt("fake/counter"), 2);
    XPLMCommandOnce(XPLMFindCommand("fake/command"));
    EXPECT_EQ(sim.Log().Lines().back(), "command phase 2");
    host.Stop();
    EXPECT_EQ(XPLMFindDataRef("fake/counter"), nullptr);
    EXPECT_EQ(sim.Loops().Count(), 0U);
    XPLMCommandOnce(XPLMFindCommand("fake/command"));
    EXPECT_EQ(sim.Log().Lines().back(), "stop");
}

TEST_F(PluginHostTest, WhatThePluginLeavesBehindIsTakenBack) {
    PluginHost host(sim, NEIGHBOUR_PLUGIN);
    host.Start();
    host.Enable();
    EXPECT_EQ(sim.Loops().Count(), 1U);
    EXPECT_NE(XPLMFindDataRef("neighbour/trigger"), nullptr);
    host.Stop();
    EXPECT_EQ(XPLMFindDataRef("neighbour/trigger"), nullptr);
    EXPECT_EQ(sim.Loops().Count(), 0U);
    EXPECT_EQ(sim.Log().Lines().back(),
              "headless-sim: note: " NEIGHBOUR_PLUGIN
              ": left at its stop, taken back by the simulator: flight loops "
              "(XPLMUnregisterFlightLoopCallback): 1, datarefs (XPLMUnregisterDataAccessor): 2");
}

TEST_F(PluginHostTest, AStoppedPluginCanBeStartedAgain) {
    PluginHost host(sim, FAKE_PLUGIN);
    host.Start();
    host.Enable();
    host.Stop();
    host.Start();
    host.Enable();
    EXPECT_NE(XPLMFindDataRef("fake/counter"), nullptr);
}

TEST_F(PluginHostTest, UnloadTakesTheStepsThatAreMissing) {
    PluginHost host(sim, FAKE_PLUGIN);
    host.Start();
    host.Enable();
    EXPECT_TRUE(host.Unload());
    EXPECT_EQ(sim.Log().Lines(), (std::vector<std::string>{"start", "enable", "disable", "stop"}));
    EXPECT_TRUE(host.Unload());
    EXPECT_THAT(textOf<PluginError>([&] { host.Start(); }), EndsWith(": the plugin is not loaded"));
}

TEST_F(PluginHostTest, WhatAConstructorRegistersIsThePluginsOwn) {
    PluginHost host(sim, EAGER_PLUGIN);
    sim.RunFrame(0.1);
    EXPECT_THAT(sim.Log().Text(), Not(HasSubstr("flight loop\n"))) << "it is not enabled";
    host.Start();
    host.Enable();
    sim.RunFrame(0.1);
    XPLMSendMessageToPlugin(XPLMFindPluginBySignature("headless.tests.eager"), 1000, nullptr);
    EXPECT_TRUE(host.Unload());
    sim.RunFrame(0.1);
    EXPECT_EQ(sim.Log().Text(),
              "headless-sim: warning: " EAGER_PLUGIN
              ": XPLMRegisterFlightLoopCallback: constructors: at the wrong moment\n"
              "started from " EAGER_PLUGIN
              "\nflight loop\nmessage 1000\nown is 7\n"
              "headless-sim: note: " EAGER_PLUGIN
              ": left at its stop, taken back by the simulator: flight loops "
              "(XPLMUnregisterFlightLoopCallback): 1, datarefs (XPLMUnregisterDataAccessor): 1\n");
}

TEST_F(PluginHostTest, TellsWhenAPluginStaysInTheProcess) {
    PluginHost host(sim, STICKY_PLUGIN);
    host.Start();
    EXPECT_FALSE(host.Unload());
}

TEST_F(PluginHostTest, StepsAtTheWrongTimeAreRefused) {
    PluginHost host(sim, FAKE_PLUGIN);
    EXPECT_THAT(textOf<PluginError>([&] { host.Enable(); }),
                EndsWith(": the plugin is not started"));
    host.Disable();
    host.Stop();
    host.SendMessage(102, nullptr);
    EXPECT_TRUE(sim.Log().Lines().empty());
    host.Start();
    EXPECT_THAT(textOf<PluginError>([&] { host.Start(); }),
                EndsWith(": the plugin is started already"));
    host.Enable();
    EXPECT_THAT(textOf<PluginError>([&] { host.Enable(); }),
                EndsWith(": the plugin is enabled already"));
}

TEST_F(PluginHostTest, APluginThatRefusesToStartLeavesNothingRegistered) {
    PluginHost host(sim, REFUSING_PLUGIN);
    EXPECT_THAT(textOf<PluginError>([&] { host.Start(); }),
                EndsWith(": the plugin refused to start"));
    EXPECT_FALSE(host.IsStarted());
    EXPECT_EQ(sim.Loops().Count(), 0U);
}

TEST_F(PluginHostTest, ALibraryWithoutAnEntryPointIsNotAPlugin) {
    EXPECT_THAT(textOf<PluginError>([&] { PluginHost(sim, INCOMPLETE_PLUGIN); }),
                EndsWith(": not a plugin: it has no XPluginDisable"));
}

TEST_F(PluginHostTest, AMissingFileIsNotAPlugin) {
    EXPECT_EQ(textOf<PluginError>([&] { PluginHost(sim, "none.xpl"); }),
              "none.xpl: there is no such plugin");
}

TEST_F(PluginHostTest, AFileThatIsNotALibraryIsReportedInOneLine) {
    const TemporaryDirectory folder;
    const std::string path = folder.Write("text.xpl", "not a library at all, just some text\n");
    const std::string error = textOf<PluginError>([&] { PluginHost(sim, path); });
    EXPECT_THAT(error, HasSubstr(path));
    EXPECT_THAT(error, Not(HasSubstr("\n")));
}
