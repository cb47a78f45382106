// The entry points at the stop, after it, and when something fails.

#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "EntryPointsTest.h"
#include "PluginObjects.h"
#include "plugin/PluginCallbacks.h"
#include "support/LoopbackListener.h"
#include "support/SocketFaults.h"
#include "support/TcpPeer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

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
    EXPECT_THROW(TcpPeer{kPluginPort}, std::system_error);
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
    const TcpPeer client(kPluginPort);
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
    EXPECT_NO_THROW(TcpPeer{kPluginPort});
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
    SocketFaults faults;
    faults.Fail(SocketCall::Listen, EADDRINUSE);
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
    SocketFaults faults;
    faults.Fail(SocketCall::Listen, EADDRINUSE);
    start();
    EXPECT_EQ(simulator.Loops().Count(), 0U);
}

TEST_F(EntryPointsTest, StartAfterARefusedStartWasStopped) {
    {
        SocketFaults faults;
        faults.Fail(SocketCall::Listen, EADDRINUSE);
        EXPECT_EQ(start(), 0);
    }
    XPluginStop();
    EXPECT_EQ(nullUnregistrations(), 4U);
    EXPECT_THAT(allGlobals(), testing::Each(nullptr));
    EXPECT_EQ(start(), 1);
    EXPECT_NO_THROW(TcpPeer{kPluginPort});
}

TEST_F(EntryPointsTest, EndTheProcessWhenThePortIsTaken) {
    const LoopbackListener otherProgram(kPluginPort);
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
    EntryPointsBarrierTest() { objects.Publish(); }

    PluginObjects objects{MyFlightLoopCallback};
    RecordingLogger& logger = objects.logger;
    FakeDatarefProvider& provider = objects.provider;
    SimStateInformation& simState = objects.simState;
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

TEST_F(EntryPointsBarrierTest, EndsAMessageThatThrows) {
    bool thrown = false;
    simulator.Threads().SetWatch([&](const char* /*function*/) {
        thrown = true;
        throw std::runtime_error("out of memory");
    });
    XPluginReceiveMessage(XPLM_PLUGIN_XPLANE, 102, nullptr);
    EXPECT_TRUE(thrown);
    EXPECT_TRUE(simState.IsPlaneLoaded());
    EXPECT_EQ(simState.GetPlaneId(), 0U);
    simulator.Threads().SetWatch({});
}

} // namespace
