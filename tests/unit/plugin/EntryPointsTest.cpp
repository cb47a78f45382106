// The entry points from the first start on.

#include "EntryPointsTest.h"

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "commands/ICommandObserver.h"
#include "common/SimStateInformation.h"
#include "datarefs/IDatarefProvider.h"
#include "plugin/PluginCallbacks.h"
#include "plugin/XPlanePlugin.h"
#include "support/FakeProtocol.h"
#include "support/RecordingLogger.h"
#include "support/TcpPeer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

// Not started.

TEST_F(EntryPointsTest, DoNothingBeforeTheStart) {
    EXPECT_EQ(XPluginEnable(), 1);
    XPluginDisable();
    XPluginReceiveMessage(XPLM_PLUGIN_XPLANE, 102, nullptr);
    XPluginStop();
    EXPECT_EQ(MyFlightLoopCallback(0.02F, 0.02F, 1, nullptr), -1.0F);
    EXPECT_EQ(MyCommandCallBack(nullptr, 0, nullptr), 1);
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_THAT(simulator.Log().Lines(), IsEmpty());
    EXPECT_THAT(allGlobals(), testing::Each(nullptr));
}

// Start.

TEST_F(EntryPointsTest, BuildEveryObjectAtTheStart) {
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(allGlobals(), testing::Each(testing::NotNull()));
    EXPECT_EQ(globalPlugin->GetDatarefProvider(), datarefProvider);
}

TEST_F(EntryPointsTest, FillInTheTextsOfThePlugin) {
    start();
    EXPECT_STREQ(name, "XPlaneTCPOrvaneLin v7.0.1");
    EXPECT_STREQ(signature, "kyr.flight.xplaneorvane.plugin");
    EXPECT_STREQ(description,
                 "Reads and writes X-Plane datarefs from external programs using TCP sockets.");
}

TEST_F(EntryPointsTest, StartWithTheseCallsInThisOrder) {
    start();
    EXPECT_THAT(
        calls(),
        ElementsAre("XPLMFindPluginsMenu()", "XPLMAppendMenuItem(XPlane10Orvane v7.0.1)",
                    "XPLMRegisterFlightLoopCallback(-2)",
                    "XPLMRegisterDataAccessor(kyr/autopilot_external_control, 1, writable)",
                    "XPLMRegisterDataAccessor(kyr/autopilot_trigger_disable, 1, writable)",
                    "XPLMRegisterDataAccessor(kyr/external_forcescalefactor_active, 16, writable)",
                    "XPLMRegisterDataAccessor(kyr/external_forcescalefactor_value, 16, writable)"));
    EXPECT_THAT(simulator.Log().Lines(), IsEmpty());
}

TEST_F(EntryPointsTest, PublishTheOwnDatarefsWithTheirSizesAndZeros) {
    start();
    EXPECT_EQ(simulator.Datarefs().GetInt("kyr/autopilot_external_control"), 0);
    EXPECT_EQ(simulator.Datarefs().GetInt("kyr/autopilot_trigger_disable"), 0);
    EXPECT_EQ(simulator.Datarefs().GetIntArray("kyr/external_forcescalefactor_active"),
              (std::vector<int>{0, 0, 0, 0}));
    EXPECT_EQ(simulator.Datarefs().GetIntArray("kyr/external_forcescalefactor_value"),
              (std::vector<int>{0, 0, 0, 0}));
}

TEST_F(EntryPointsTest, KeepWhatTheSimulatorWritesToTheOwnDatarefs) {
    start();
    simulator.Datarefs().SetInt("kyr/autopilot_external_control", 5);
    simulator.Datarefs().SetIntArray("kyr/external_forcescalefactor_value", {1, 2, 3});
    EXPECT_EQ(simulator.Datarefs().GetInt("kyr/autopilot_external_control"), 5);
    EXPECT_EQ(simulator.Datarefs().GetIntArray("kyr/external_forcescalefactor_value"),
              (std::vector<int>{1, 2, 3, 0}));
}

TEST_F(EntryPointsTest, ServeEveryTypeOfDatarefOfTheFileWithItsOwnAccessors) {
    directory.Write(kConfigFile,
                    "my/int int\nmy/float float\nmy/double double\nmy/ints int_array 3\n"
                    "my/floats float_array 3\nmy/bytes byte_array 3\n");
    start();
    simulator.Datarefs().SetInt("my/int", 5);
    simulator.Datarefs().SetFloat("my/float", 0.5F);
    simulator.Datarefs().SetDouble("my/double", 0.25);
    simulator.Datarefs().SetIntArray("my/ints", {1, 2});
    simulator.Datarefs().SetFloatArray("my/floats", {1.5F, 2.5F});
    EXPECT_EQ(simulator.Datarefs().GetInt("my/int"), 5);
    EXPECT_EQ(simulator.Datarefs().GetFloat("my/float"), 0.5F);
    EXPECT_EQ(simulator.Datarefs().GetDouble("my/double"), 0.0);
    EXPECT_EQ(simulator.Datarefs().GetIntArray("my/ints"), (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(simulator.Datarefs().GetFloatArray("my/floats"),
              (std::vector<float>{1.5F, 2.5F, 0.0F}));
    EXPECT_EQ(simulator.Datarefs().GetBytes("my/bytes"), "");
}

TEST_F(EntryPointsTest, ReadTheConfigurationFileBeforeTheOwnDatarefs) {
    directory.Write(kConfigFile, "my/lamp float\nkyr/autopilot_trigger_disable float\n");
    start();
    std::vector<std::string> registrations;
    for (const auto& call : simulator.Recorder().CallsOf("XPLMRegisterDataAccessor")) {
        registrations.push_back(call.arguments);
    }
    EXPECT_THAT(registrations,
                ElementsAre("my/lamp, 2, writable", "kyr/autopilot_trigger_disable, 2, writable",
                            "kyr/autopilot_external_control, 1, writable",
                            "kyr/external_forcescalefactor_active, 16, writable",
                            "kyr/external_forcescalefactor_value, 16, writable"));
    EXPECT_EQ(directory.Read(kConfigFile),
              "my/lamp float\nkyr/autopilot_trigger_disable float\n"
              "\nkyr/autopilot_external_control int"
              "\nkyr/external_forcescalefactor_active int_array 4"
              "\nkyr/external_forcescalefactor_value int_array 4");
}

TEST_F(EntryPointsTest, OnlyForwardALaterStart) {
    start();
    const auto before = allGlobals();
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(allGlobals(), before);
    EXPECT_EQ(simulator.PluginsMenu().Items().size(), 2U);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMRegisterFlightLoopCallback").size(), 1U);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMRegisterDataAccessor").size(), 4U);
    EXPECT_THAT(
        simulator.Log().Lines(),
        ElementsAre(MatchesRegex("XPlaneOrvane [0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+ "
                                 "Warning@TcpServer::Init : isInit == true. Skipping init.")));
}

TEST_F(EntryPointsTest, ReplaceWhatAStartThatRanOutOfMemoryHasLeft) {
    auto* const left = new RecordingLogger;
    bool deleted = false;
    left->onDelete = [&] { deleted = true; };
    loggingService = left;
    EXPECT_EQ(start(), 1);
    EXPECT_TRUE(deleted);
}

// Verbose marker.

TEST_F(EntryPointsTest, LogNoTraceWithoutTheMarkerFile) {
    start();
    simulator.RunFrame(0.02);
    simulator.RunFrame(0.02);
    XPluginStop();
    EXPECT_THAT(simulator.Log().Lines(), IsEmpty());
}

TEST_F(EntryPointsTest, LogTheTraceWithAnEmptyMarkerFile) {
    directory.Write("XPLANEORVANE_VERBOSE", "");
    start();
    EXPECT_THAT(simulator.Log().Lines(),
                ElementsAre(MatchesRegex("XPlaneOrvane [0-9]+-[0-9]+-[0-9]+ "
                                         "[0-9]+:[0-9]+:[0-9]+ PluginStart"),
                            MatchesRegex("XPlaneOrvane [0-9]+-[0-9]+-[0-9]+ "
                                         "[0-9]+:[0-9]+:[0-9]+ Verbose@TcpServer::Init")));
    EXPECT_EQ(simulator.Recorder().Calls().front().function, "XPLMDebugString")
        << "before anything else";
    XPluginStop();
    EXPECT_THAT(simulator.Log().Lines().back(),
                MatchesRegex("XPlaneOrvane [0-9]+-[0-9]+-[0-9]+ "
                             "[0-9]+:[0-9]+:[0-9]+ Verbose@TcpServer::Cleanup"));
}

TEST_F(EntryPointsTest, DoNotReadTheMarkerFile) {
    directory.Write("XPLANEORVANE_VERBOSE", "0\nno\n");
    start();
    EXPECT_EQ(simulator.Log().Lines().size(), 2U);
}

TEST_F(EntryPointsTest, LookForTheMarkerFileAtEveryFirstStart) {
    directory.Write("XPLANEORVANE_VERBOSE", "");
    start();
    XPluginStop();
    const auto lines = simulator.Log().Lines().size();
    std::filesystem::remove(directory.Path() / "XPLANEORVANE_VERBOSE");
    simulator.DropRegistrations();
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(simulator.Log().Lines().size(), lines);
}

// Running.

TEST_F(EntryPointsTest, AreCalledOnTheSecondFlightLoopAndOnEveryOneAfterIt) {
    const XPLMPluginID editor = simulator.Plugins().AddPlugin("xplanesdk.examples.DataRefEditor");
    start();
    simulator.RunFrame(0.02);
    EXPECT_THAT(simulator.Plugins().Messages(), IsEmpty());
    simulator.RunFrame(0.02);
    EXPECT_EQ(simulator.Plugins().Messages().size(), 4U);
    EXPECT_EQ(simulator.Plugins().Messages()[0].plugin, editor);
    datarefProvider->RegisterInt("kyr/later");
    EXPECT_EQ(simulator.Plugins().Messages().size(), 5U) << "announced at once from then on";
}

TEST_F(EntryPointsTest, AcceptAClientInAFlightLoop) {
    start();
    const TcpPeer client(kPluginPort);
    simulator.RunFrame(0.02);
    simulator.RunFrame(0.02);
    EXPECT_THAT(simulator.Log().Lines(), IsEmpty());
}

TEST_F(EntryPointsTest, AreEnabledAlwaysAndServeWhileDisabled) {
    start();
    EXPECT_EQ(XPluginEnable(), 1);
    XPluginDisable();
    EXPECT_EQ(simulator.Loops().Count(), 1U);
    EXPECT_NO_THROW(TcpPeer{kPluginPort});
    EXPECT_EQ(XPluginEnable(), 1);
}

TEST_F(EntryPointsTest, FollowTheUsersAircraft) {
    simulator.Datarefs().Define(
        {.name = "sim/aircraft/view/acf_descrip", .types = xplmType_Data, .elements = 260});
    simulator.Datarefs().SetBytes("sim/aircraft/view/acf_descrip",
                                  "A training glider" + std::string(79, '.') + "2_L\x94");
    start();
    XPluginReceiveMessage(XPLM_PLUGIN_XPLANE, 102, reinterpret_cast<void*>(1));
    EXPECT_FALSE(simStateInformation->IsPlaneLoaded()) << "another aircraft";
    XPluginReceiveMessage(XPLM_PLUGIN_XPLANE, 102, nullptr);
    EXPECT_TRUE(simStateInformation->IsPlaneLoaded());
    EXPECT_EQ(simStateInformation->GetPlaneId(), 0x12345678U);
    XPluginReceiveMessage(XPLM_PLUGIN_XPLANE, 106, nullptr);
    EXPECT_FALSE(simStateInformation->IsPlaneLoaded());
    XPluginReceiveMessage(XPLM_PLUGIN_XPLANE, 103, reinterpret_cast<void*>(1));
    EXPECT_TRUE(simStateInformation->IsPlaneLoaded()) << "an airport, whatever the parameter";
}

TEST_F(EntryPointsTest, HandACommandToWhoeverSubscribed) {
    start();
    FakeProtocol protocol;
    commandObserver->RegisterProtocolForCommandCallback(&protocol, 5, "kyr/command");
    XPLMCommandOnce(simulator.Commands().Lookup("kyr/command"));
    EXPECT_THAT(protocol.commands, ElementsAre(testing::Pair(5U, 0), testing::Pair(5U, 2)));
    commandObserver->UnregisterAllForProtocol(&protocol);
}

} // namespace
