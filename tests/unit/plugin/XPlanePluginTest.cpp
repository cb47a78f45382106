#include <algorithm>
#include <array>
#include <chrono>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PluginObjects.h"
#include "headless/xplm/Simulator.h"
#include "plugin/XPlanePlugin.h"
#include "support/Deadline.h"
#include "support/LoopbackListener.h"
#include "support/TcpPeer.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The provider's calls at a start.
const std::vector<std::string> kCallsOfAStart{
    "ParseConfig", "RegisterInt kyr/autopilot_external_control",
    "RegisterInt kyr/autopilot_trigger_disable",
    "RegisterIntArray 4 kyr/external_forcescalefactor_active",
    "RegisterIntArray 4 kyr/external_forcescalefactor_value"};

class XPlanePluginTest : public testing::Test {
protected:
    XPlanePluginTest() { simulator.Recorder().Enable(); }

    int start() {
        return plugin.XPluginStart(outName.data(), outSignature.data(), outDescription.data());
    }

    std::vector<std::string> calledFunctions() {
        std::vector<std::string> functions;
        for (const auto& call : simulator.Recorder().Calls()) {
            functions.push_back(call.function);
        }
        return functions;
    }

    // How often the simulator was asked to unregister a null handle.
    long nullUnregistrations() {
        const auto& refusals = simulator.Recorder().RecentRefusals();
        return std::count_if(refusals.begin(), refusals.end(), [](const auto& refusal) {
            return refusal.reason == headless::Refusal::NullHandle &&
                   refusal.function == "XPLMUnregisterDataAccessor";
        });
    }

    using Text = std::array<char, 256>;
    static Text filled() {
        Text text;
        text.fill('#');
        return text;
    }

    headless::Simulator simulator;
    PluginObjects objects;
    RecordingLogger& logger = objects.logger;
    FakeProtocolFactory& factory = objects.factory;
    FakeCommandObserver& observer = objects.observer;
    FakeDatarefProvider& provider = objects.provider;
    SimStateInformation& simState = objects.simState;
    XPlanePlugin& plugin = objects.plugin;

    Text outName = filled();
    Text outSignature = filled();
    Text outDescription = filled();
};

// Start.

TEST_F(XPlanePluginTest, FillsInNameSignatureAndDescription) {
    EXPECT_EQ(start(), 1);
    EXPECT_STREQ(outName.data(), "XPlaneTCPOrvaneLin v7.0.1");
    EXPECT_STREQ(outSignature.data(), "kyr.flight.xplaneorvane.plugin");
    EXPECT_STREQ(outDescription.data(),
                 "Reads and writes X-Plane datarefs from external programs using TCP sockets.");
}

TEST_F(XPlanePluginTest, HasASignatureOf30CharactersAndADescriptionOf75) {
    start();
    EXPECT_EQ(std::string(outSignature.data()).size(), 30U);
    EXPECT_EQ(std::string(outDescription.data()).size(), 75U);
}

TEST_F(XPlanePluginTest, WritesNothingAfterTheTexts) {
    start();
    EXPECT_EQ(std::string(outName.data() + 26, 230), std::string(230, '#'));
    EXPECT_EQ(std::string(outSignature.data() + 31, 225), std::string(225, '#'));
    EXPECT_EQ(std::string(outDescription.data() + 76, 180), std::string(180, '#'));
}

TEST_F(XPlanePluginTest, ShowsItsVersionInThePluginsMenu) {
    start();
    ASSERT_EQ(simulator.PluginsMenu().Items().size(), 1U);
    EXPECT_EQ(simulator.PluginsMenu().Items()[0].text, "XPlane10Orvane v7.0.1");
    EXPECT_EQ(simulator.PluginsMenu().Items()[0].reference, nullptr);
}

TEST_F(XPlanePluginTest, StartsInThisOrder) {
    std::vector<std::string> log;
    provider.onCall = [&] {
        log.push_back(provider.calls.back() + " after " +
                      simulator.Recorder().Calls().back().function);
    };
    EXPECT_EQ(start(), 1);
    EXPECT_THAT(calledFunctions(), ElementsAre("XPLMFindPluginsMenu", "XPLMAppendMenuItem",
                                               "XPLMRegisterFlightLoopCallback"));
    EXPECT_EQ(log.at(0), "ParseConfig after XPLMRegisterFlightLoopCallback");
    EXPECT_EQ(provider.calls, kCallsOfAStart);
}

TEST_F(XPlanePluginTest, AsksForItsFirstCallTwoFlightLoopsLater) {
    start();
    const auto calls = simulator.Recorder().CallsOf("XPLMRegisterFlightLoopCallback");
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].arguments, "-2");
    EXPECT_EQ(calls[0].handle, nullptr) << "the refcon";
}

TEST_F(XPlanePluginTest, ListensOnceItHasStarted) {
    EXPECT_THROW(TcpPeer{kPluginPort}, std::system_error);
    start();
    EXPECT_NO_THROW(TcpPeer{kPluginPort});
}

TEST_F(XPlanePluginTest, IsRefusedWhenTheServerDoesNotListen) {
    logger.throwsOnError = false;
    const LoopbackListener otherProgram(kPluginPort);
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(logger.At(LogLevelError),
                ElementsAre("Error@TcpServer::Init : bind() : text of error 98"));
    EXPECT_THAT(calledFunctions(), ElementsAre("XPLMFindPluginsMenu", "XPLMAppendMenuItem"));
    EXPECT_EQ(simulator.Loops().Count(), 0U);
    EXPECT_THAT(provider.calls, IsEmpty());
    EXPECT_STREQ(outName.data(), "XPlaneTCPOrvaneLin v7.0.1") << "filled in before";
}

TEST_F(XPlanePluginTest, RegistersItsFlightLoopOnceHoweverOftenItIsStarted) {
    provider.handle = &provider;
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMRegisterFlightLoopCallback").size(), 1U);
    EXPECT_EQ(simulator.PluginsMenu().Items().size(), 2U) << "the menu item comes every time";
    EXPECT_THAT(provider.calls, ElementsAre("ParseConfig", testing::_, testing::_, testing::_,
                                            testing::_, "ParseConfig"))
        << "a dataref that it has is not registered again";
}

TEST_F(XPlanePluginTest, RegistersADatarefAgainThatItDidNotGet) {
    start();
    provider.calls.clear();
    start();
    EXPECT_EQ(provider.calls, kCallsOfAStart);
}

TEST_F(XPlanePluginTest, TakesBackAStartThatFailsAfterTheServerListens) {
    provider.onCall = [] { throw std::bad_alloc(); };
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(provider.calls, ElementsAre("ParseConfig", "UnregisterAll"));
    EXPECT_EQ(simulator.Loops().Count(), 0U);
    EXPECT_THROW(TcpPeer{kPluginPort}, std::system_error);
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("Warning@XPlanePlugin::XPluginStart : std::bad_alloc"));
}

TEST_F(XPlanePluginTest, StartsAfterAStartThatFailed) {
    provider.handle = &provider;
    provider.onCall = [&] {
        if (provider.calls.size() == 4) {
            throw std::bad_alloc();
        }
    };
    EXPECT_EQ(start(), 0);
    provider.onCall = {};
    provider.calls.clear();
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(provider.calls, kCallsOfAStart);
    EXPECT_EQ(simulator.Loops().Count(), 1U);
    EXPECT_NO_THROW(TcpPeer{kPluginPort});
}

// Enabling.

TEST_F(XPlanePluginTest, IsEnabledAlways) {
    EXPECT_EQ(plugin.XPluginEnable(), 1);
    start();
    EXPECT_EQ(plugin.XPluginEnable(), 1);
}

TEST_F(XPlanePluginTest, KeepsServingWhileItIsDisabled) {
    start();
    simulator.Recorder().Clear();
    provider.calls.clear();
    plugin.XPluginDisable();
    EXPECT_THAT(simulator.Recorder().Calls(), IsEmpty());
    EXPECT_THAT(provider.calls, IsEmpty());
    EXPECT_EQ(simulator.Loops().Count(), 1U);
    EXPECT_NO_THROW(TcpPeer{kPluginPort});
}

// Flight loop.

TEST_F(XPlanePluginTest, AsksForTheNextFlightLoop) {
    start();
    EXPECT_EQ(plugin.FlightLoop(0.02F, 0.02F, 1, nullptr), -1.0F);
}

TEST_F(XPlanePluginTest, PublishesItsDatarefsBeforeItServesTheNetwork) {
    start();
    int servedWhenPublishing = -1;
    provider.onCall = [&] { servedWhenPublishing = factory.connectionsServed; };
    const TcpPeer client(kPluginPort);
    EXPECT_TRUE(driveUntil(
        [&] {
            provider.calls.clear();
            plugin.FlightLoop(0.02F, 0.02F, 1, nullptr);
            EXPECT_THAT(provider.calls, ElementsAre("ProcessFlightLoop"));
        },
        [&] { return factory.connectionsServed == 1; }));
    EXPECT_EQ(servedWhenPublishing, 0);
}

// Commands.

TEST_F(XPlanePluginTest, AnswersACommandAsTheObserverDoes) {
    int command = 0;
    int refcon = 0;
    for (const int result : {1, 0, 7}) {
        observer.commandResult = result;
        EXPECT_EQ(plugin.CommandHandler(&command, 2, &refcon), result);
    }
    EXPECT_EQ(observer.commandsHandled, 3);
    EXPECT_EQ(observer.lastCommand, &command);
    EXPECT_EQ(observer.lastPhase, 2);
    EXPECT_EQ(observer.lastRefcon, &refcon);
}

TEST_F(XPlanePluginTest, HandsOutItsDatarefProvider) {
    EXPECT_EQ(plugin.GetDatarefProvider(), &provider);
}

// Messages.

enum class Effect { None, Loaded, Unloaded };

struct MessageRow {
    std::string name;
    long message;
    Effect onUsersAircraft;
    Effect onAnotherAircraft;
};

void PrintTo(const MessageRow& row, std::ostream* out) {
    *out << row.name;
}

class XPlanePluginMessageTest : public XPlanePluginTest,
                                public testing::WithParamInterface<MessageRow> {
protected:
    // Ids of descriptions of 100 bytes.
    static constexpr std::uint32_t kNoId = 0;

    XPlanePluginMessageTest() {
        simulator.Datarefs().Define(
            {.name = "sim/aircraft/view/acf_descrip", .types = xplmType_Data, .elements = 260});
        simulator.Datarefs().SetBytes("sim/aircraft/view/acf_descrip",
                                      "A training glider" + std::string(79, '.') + "2_L\x94");
    }

    void receive(std::uintptr_t param) {
        plugin.XPluginReceiveMessage(0, GetParam().message, reinterpret_cast<void*>(param));
    }

    void expectAfterNotLoaded(Effect effect) {
        EXPECT_EQ(simState.IsPlaneLoaded(), effect == Effect::Loaded);
        EXPECT_EQ(simState.GetPlaneId(), effect == Effect::Loaded ? 0x12345678 : kNoId);
    }

    void expectAfterLoaded(Effect effect) {
        EXPECT_EQ(simState.IsPlaneLoaded(), effect != Effect::Unloaded);
        EXPECT_EQ(simState.GetPlaneId(), effect == Effect::Loaded ? 0x12345678 : kNoId);
    }
};

TEST_P(XPlanePluginMessageTest, AboutTheUsersAircraft) {
    receive(0);
    expectAfterNotLoaded(GetParam().onUsersAircraft);
}

TEST_P(XPlanePluginMessageTest, AboutAnotherAircraft) {
    receive(1);
    expectAfterNotLoaded(GetParam().onAnotherAircraft);
}

TEST_P(XPlanePluginMessageTest, AboutTheUsersAircraftWhileOneIsLoaded) {
    simState.SetPlaneLoaded(true);
    receive(0);
    expectAfterLoaded(GetParam().onUsersAircraft);
}

TEST_P(XPlanePluginMessageTest, AboutAnotherAircraftWhileOneIsLoaded) {
    simState.SetPlaneLoaded(true);
    receive(1);
    expectAfterLoaded(GetParam().onAnotherAircraft);
}

TEST_P(XPlanePluginMessageTest, FromAnotherPlugin) {
    plugin.XPluginReceiveMessage(17, GetParam().message, nullptr);
    expectAfterNotLoaded(GetParam().onUsersAircraft);
}

INSTANTIATE_TEST_SUITE_P(
    AllMessages, XPlanePluginMessageTest,
    testing::Values(MessageRow{"Crashed101", 101, Effect::None, Effect::None},
                    MessageRow{"PlaneLoaded102", 102, Effect::Loaded, Effect::None},
                    MessageRow{"AirportLoaded103", 103, Effect::Loaded, Effect::Loaded},
                    MessageRow{"SceneryLoaded104", 104, Effect::Loaded, Effect::Loaded},
                    MessageRow{"AirplaneCountChanged105", 105, Effect::None, Effect::None},
                    MessageRow{"PlaneUnloaded106", 106, Effect::Unloaded, Effect::None},
                    MessageRow{"WillWritePrefs107", 107, Effect::None, Effect::None},
                    MessageRow{"LiveryLoaded108", 108, Effect::Loaded, Effect::None},
                    MessageRow{"Unknown109", 109, Effect::None, Effect::None},
                    MessageRow{"Zero", 0, Effect::None, Effect::None},
                    MessageRow{"Negative", -102, Effect::None, Effect::None},
                    MessageRow{"OfAnotherPlugin", 0x01000000, Effect::None, Effect::None}),
    [](const auto& row) { return row.param.name; });

TEST_F(XPlanePluginTest, KeepsTheIdOfAnAircraftThatWasUnloaded) {
    plugin.XPluginReceiveMessage(0, 102, nullptr);
    const std::uint32_t id = simState.GetPlaneId();
    EXPECT_NE(id, 0U) << "the id of an empty description";
    plugin.XPluginReceiveMessage(0, 106, nullptr);
    EXPECT_EQ(simState.GetPlaneId(), id);
}

// Stop.

TEST_F(XPlanePluginTest, StopsItsFlightLoopAndItsServer) {
    provider.handle = &provider;
    start();
    simulator.Recorder().Clear();
    logger.messages.clear();
    plugin.XPluginStop();
    EXPECT_THAT(calledFunctions(), ElementsAre("XPLMUnregisterFlightLoopCallback"));
    EXPECT_EQ(simulator.Recorder().Calls()[0].handle, nullptr) << "the refcon";
    EXPECT_EQ(simulator.Loops().Count(), 0U);
    EXPECT_THAT(logger.At(LogLevelVerbose), ElementsAre("Verbose@TcpServer::Cleanup"));
    EXPECT_THROW(TcpPeer{kPluginPort}, std::system_error);
}

// The condition is inverted: the simulator drops the registered ones.
TEST_F(XPlanePluginTest, UnregistersNoDatarefThatItHas) {
    provider.handle = simulator.Datarefs().Register("kyr/a", xplmType_Int, true, {});
    start();
    plugin.XPluginStop();
    EXPECT_EQ(nullUnregistrations(), 0);
    EXPECT_THAT(simulator.Recorder().CallsOf("XPLMUnregisterDataAccessor"), IsEmpty());
    EXPECT_NE(simulator.Datarefs().Lookup("kyr/a"), nullptr);
}

TEST_F(XPlanePluginTest, UnregistersANullHandleForEveryDatarefThatItDidNotGet) {
    start();
    plugin.XPluginStop();
    EXPECT_EQ(nullUnregistrations(), 4);
}

TEST_F(XPlanePluginTest, CountsTheDatarefsThatItDidNotGetOneByOne) {
    provider.onCall = [&] { provider.handle = provider.calls.size() == 3 ? nullptr : &provider; };
    start();
    plugin.XPluginStop();
    EXPECT_EQ(nullUnregistrations(), 1);
}

TEST_F(XPlanePluginTest, StopsBeforeItWasStarted) {
    plugin.XPluginStop();
    EXPECT_EQ(nullUnregistrations(), 4);
    EXPECT_THAT(calledFunctions(), IsEmpty());
    EXPECT_THAT(logger.At(LogLevelWarning),
                ElementsAre("Warning@Cleanup::Init : isInit == false. Skipping cleanup."));
}

TEST_F(XPlanePluginTest, RegistersItsFlightLoopAgainWhenItIsStartedAfterAStop) {
    EXPECT_EQ(start(), 1);
    plugin.XPluginStop();
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(simulator.Recorder().CallsOf("XPLMRegisterFlightLoopCallback").size(), 2U);
    EXPECT_EQ(simulator.Loops().Count(), 1U);
}

} // namespace
