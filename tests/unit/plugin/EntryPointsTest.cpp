// The entry points as the simulator calls them, with the real objects behind them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "FailingListen.h"
#include "LoopbackSocket.h"
#include "XPLMDefs.h"
#include "commands/ICommandObserver.h"
#include "common/SimStateInformation.h"
#include "common/Utilities.h"
#include "headless/xplm/Simulator.h"
#include "network/NetworkResources.h"
#include "network/TcpServer.h"
#include "plugin/PluginCallbacks.h"
#include "plugin/PluginGlobals.h"
#include "plugin/XPlanePlugin.h"
#include "support/FakeCommandObserver.h"
#include "support/FakeDatarefProvider.h"
#include "support/FakeProtocol.h"
#include "support/FakeUtilities.h"
#include "support/RecordingLogger.h"
#include "support/TemporaryDirectory.h"

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription);
PLUGIN_API void XPluginStop();
PLUGIN_API int XPluginEnable();
PLUGIN_API void XPluginDisable();
PLUGIN_API void XPluginReceiveMessage(XPLMPluginID from, int message, void* param);

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

constexpr const char* kConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

class EntryPointsTest : public testing::Test {
protected:
    EntryPointsTest() {
        directory.MakePluginsFolder();
        simulator.Recorder().Enable();
    }
    ~EntryPointsTest() override { XPluginStop(); }

    int start() { return XPluginStart(name, signature, description); }

    // What the plugin did to the simulator: "function(arguments)".
    std::vector<std::string> calls() {
        std::vector<std::string> found;
        for (const auto& call : simulator.Recorder().Calls()) {
            found.push_back(call.function + "(" + call.arguments + ")");
        }
        return found;
    }

    std::size_t nullUnregistrations() { return simulator.Recorder().NullHandleCalls(); }

    static std::vector<const void*> allGlobals() {
        return {globalPlugin,    simStateInformation, loggingService,   utils,    commandObserver,
                datarefProvider, protocolFactory,     networkResources, tcpServer};
    }

    TemporaryDirectory directory;
    headless::Simulator simulator;
    char name[256] = {};
    char signature[256] = {};
    char description[256] = {};
};

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
    LoopbackSocket client;
    EXPECT_EQ(client.Connect(), 0);
    simulator.RunFrame(0.02);
    simulator.RunFrame(0.02);
    EXPECT_THAT(simulator.Log().Lines(), IsEmpty());
}

TEST_F(EntryPointsTest, AreEnabledAlwaysAndServeWhileDisabled) {
    start();
    EXPECT_EQ(XPluginEnable(), 1);
    XPluginDisable();
    EXPECT_EQ(simulator.Loops().Count(), 1U);
    LoopbackSocket client;
    EXPECT_EQ(client.Connect(), 0);
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

// Stop.

TEST_F(EntryPointsTest, ClearEveryPointerAtTheStop) {
    start();
    XPluginStop();
    EXPECT_THAT(allGlobals(), testing::Each(nullptr));
}

TEST_F(EntryPointsTest, StopWithTheseCallsAlone) {
    start();
    simulator.Recorder().Clear();
    XPluginStop();
    EXPECT_THAT(calls(), ElementsAre("XPLMUnregisterFlightLoopCallback()"));
    EXPECT_EQ(simulator.Recorder().Calls()[0].handle, nullptr) << "the refcon";
    EXPECT_EQ(nullUnregistrations(), 0U);
    EXPECT_EQ(simulator.Loops().Count(), 0U);
    LoopbackSocket client;
    EXPECT_EQ(client.Connect(), ECONNREFUSED);
}

TEST_F(EntryPointsTest, DoNothingAtASecondStop) {
    start();
    XPluginStop();
    simulator.Recorder().Clear();
    XPluginStop();
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_EQ(nullUnregistrations(), 0U);
}

TEST_F(EntryPointsTest, StopWithAClientConnected) {
    start();
    LoopbackSocket client;
    ASSERT_EQ(client.Connect(), 0);
    simulator.RunFrame(0.02);
    simulator.RunFrame(0.02);
    XPluginStop();
    EXPECT_THAT(allGlobals(), testing::Each(nullptr));
    EXPECT_THAT(simulator.Log().Lines(), IsEmpty());
}

// The simulator drops datarefs and command handlers some time after the stop.
TEST_F(EntryPointsTest, AnswerALateAccessorWithZero) {
    start();
    simulator.Datarefs().SetInt("kyr/autopilot_external_control", 5);
    XPluginStop();
    EXPECT_EQ(simulator.Datarefs().GetInt("kyr/autopilot_external_control"), 0);
    simulator.Datarefs().SetInt("kyr/autopilot_external_control", 6);
    EXPECT_EQ(simulator.Datarefs().GetInt("kyr/autopilot_external_control"), 0);
    EXPECT_THAT(simulator.Datarefs().GetIntArray("kyr/external_forcescalefactor_active"),
                IsEmpty());
}

TEST_F(EntryPointsTest, LetALateCommandGoOn) {
    start();
    FakeProtocol protocol;
    protocol.commandResult = 0;
    commandObserver->RegisterProtocolForCommandCallback(&protocol, 5, "kyr/command");
    headless::Command& command = *simulator.Commands().Lookup("kyr/command");
    XPLMCommandOnce(&command);
    EXPECT_EQ(command.passedOn, (headless::PhaseCounts{0, 0, 0}));
    commandObserver->UnregisterAllForProtocol(&protocol);
    XPluginStop();
    XPLMCommandOnce(&command);
    EXPECT_EQ(command.passedOn, (headless::PhaseCounts{1, 0, 1}));
    EXPECT_EQ(MyCommandCallBack(&command, 0, nullptr), 1);
}

TEST_F(EntryPointsTest, AnswerALateFlightLoopWithMinusOne) {
    start();
    XPluginStop();
    EXPECT_EQ(MyFlightLoopCallback(0.02F, 0.02F, 1, nullptr), -1.0F);
    XPluginReceiveMessage(XPLM_PLUGIN_XPLANE, 102, nullptr);
    EXPECT_EQ(XPluginEnable(), 1);
}

TEST_F(EntryPointsTest, StartAgainInTheSameProcess) {
    start();
    XPluginStop();
    simulator.DropRegistrations();
    simulator.Recorder().Clear();
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMRegisterFlightLoopCallback").size(), 1U);
    simulator.Datarefs().SetInt("kyr/autopilot_trigger_disable", 7);
    EXPECT_EQ(simulator.Datarefs().GetInt("kyr/autopilot_trigger_disable"), 7);
    LoopbackSocket client;
    EXPECT_EQ(client.Connect(), 0);
    EXPECT_EQ(directory.Read(kConfigFile),
              "\n"
              "kyr/autopilot_external_control int\n"
              "kyr/autopilot_trigger_disable int\n"
              "kyr/external_forcescalefactor_active int_array 4\n"
              "kyr/external_forcescalefactor_value int_array 4");
}

TEST_F(EntryPointsTest, StartAgainWhileTheSimulatorStillHoldsTheDatarefs) {
    start();
    XPluginStop();
    simulator.Recorder().Clear();
    EXPECT_EQ(start(), 1);
    XPluginStop();
    EXPECT_EQ(nullUnregistrations(), 4U) << "one for every dataref that was refused";
}

// In the order of their pointers: each pointer is null before its object goes.
TEST_F(EntryPointsTest, DeleteTheObjectsInThisOrderAndForgetEachBefore) {
    start();
    XPluginStop();
    auto* const logger = new RecordingLogger;
    auto* const utilities = new FakeUtilities;
    auto* const observer = new FakeCommandObserver;
    auto* const provider = new FakeDatarefProvider;
    auto* const factory = new FakeProtocolFactory;
    std::vector<std::string> deleted;
    const auto note = [&](const char* object, bool isForgotten) {
        deleted.push_back(std::string(object) + (isForgotten ? "" : " still known"));
    };
    provider->onDelete = [&] {
        note("provider", globalPlugin == nullptr && datarefProvider == nullptr);
    };
    factory->onDelete = [&] {
        note("factory", protocolFactory == nullptr && tcpServer == nullptr);
    };
    observer->onDelete = [&] { note("observer", commandObserver == nullptr); };
    logger->onDelete = [&] { note("logger", loggingService == nullptr); };
    utilities->onDelete = [&] { note("utilities", utils == nullptr); };

    simStateInformation = new SimStateInformation;
    loggingService = logger;
    utils = utilities;
    commandObserver = observer;
    datarefProvider = provider;
    protocolFactory = factory;
    networkResources = new NetworkResources(utilities, logger);
    tcpServer = new TcpServer(logger, utilities, factory);
    globalPlugin = new XPlanePlugin(MyFlightLoopCallback, observer, networkResources, tcpServer,
                                    provider, simStateInformation, logger);
    XPluginStop();
    EXPECT_THAT(deleted, ElementsAre("provider", "factory", "observer", "logger", "utilities"));
    EXPECT_THAT(allGlobals(), testing::Each(nullptr));
}

// Refused start.

TEST_F(EntryPointsTest, RefuseAStartWhenTheServerCannotListen) {
    const FailingListen failing;
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(calls(),
                ElementsAre("XPLMFindPluginsMenu()", "XPLMAppendMenuItem(XPlane10Orvane v7.0.1)",
                            testing::StartsWith("XPLMDebugString")));
    EXPECT_THAT(simulator.Log().Lines(),
                ElementsAre(MatchesRegex("XPlaneOrvane [0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+ "
                                         "Warning@TcpServer::Init : listen\\(\\) : "
                                         "Unknown Socket Error Code 98")));
    EXPECT_FALSE(directory.Has(kConfigFile));
    EXPECT_THAT(allGlobals(), testing::Each(testing::NotNull()));
}

TEST_F(EntryPointsTest, NeverRunAFlightLoopAfterARefusedStart) {
    const FailingListen failing;
    start();
    EXPECT_EQ(simulator.Loops().Count(), 0U);
}

TEST_F(EntryPointsTest, StartAfterARefusedStartWasStopped) {
    {
        const FailingListen failing;
        EXPECT_EQ(start(), 0);
    }
    XPluginStop();
    EXPECT_EQ(nullUnregistrations(), 4U);
    EXPECT_THAT(allGlobals(), testing::Each(nullptr));
    EXPECT_EQ(start(), 1);
    LoopbackSocket client;
    EXPECT_EQ(client.Connect(), 0);
}

TEST_F(EntryPointsTest, EndTheProcessWhenThePortIsTaken) {
    LoopbackSocket otherProgram;
    otherProgram.Listen();
    EXPECT_EXIT(
        {
            simulator.Log().EchoToStderr(true);
            start();
        },
        testing::KilledBySignal(SIGABRT),
        "XPlaneOrvane [0-9]+-[0-9]+-[0-9]+ [0-9]+:[0-9]+:[0-9]+ Error@TcpServer::Init : "
        "bind\\(\\) : Unknown Socket Error Code 98\n$");
}

// Exceptions.

class EntryPointsBarrierTest : public EntryPointsTest {
protected:
    EntryPointsBarrierTest() { globalPlugin = &plugin; }
    ~EntryPointsBarrierTest() override { globalPlugin = nullptr; }

    RecordingLogger logger;
    FakeUtilities utilities;
    FakeProtocolFactory factory;
    FakeCommandObserver observer;
    FakeDatarefProvider provider;
    SimStateInformation simState;
    NetworkResources resources{&utilities, &logger};
    TcpServer server{&logger, &utilities, &factory};
    XPlanePlugin plugin{
        MyFlightLoopCallback, &observer, &resources, &server, &provider, &simState, &logger};
};

TEST_F(EntryPointsBarrierTest, RefusesAStartThatThrows) {
    provider.onCall = [] { throw std::runtime_error("out of memory"); };
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(provider.calls, ElementsAre("ParseConfig", "UnregisterAll"));
    EXPECT_EQ(simulator.Loops().Count(), 0U);
}

TEST_F(EntryPointsBarrierTest, EndsAStopThatThrows) {
    ASSERT_EQ(start(), 1);
    bool thrown = false;
    logger.onLog = [&] {
        thrown = true;
        throw std::runtime_error("out of memory");
    };
    XPluginStop();
    EXPECT_TRUE(thrown);
    logger.onLog = {};
}

int throwingBytes(void* /*refcon*/, void* /*values*/, int /*offset*/, int /*max*/) {
    throw std::runtime_error("out of memory");
}

TEST_F(EntryPointsBarrierTest, EndsAMessageThatThrows) {
    simulator.Datarefs().Register("sim/aircraft/view/acf_descrip", xplmType_Data, true,
                                  {.readBytes = throwingBytes});
    XPluginReceiveMessage(XPLM_PLUGIN_XPLANE, 102, nullptr);
    EXPECT_TRUE(simState.IsPlaneLoaded());
    EXPECT_EQ(simState.GetPlaneId(), 0U);
}

} // namespace
