#include <sys/wait.h>

#include <string>
#include <vector>

#include "e2e/EndToEndTest.h"
#include "orvane/headless/Simulator.h"
#include "support/LoopbackListener.h"

namespace {

constexpr const char* kConfigFile = "Resources/plugins/xplaneorvane_datarefs.cfg";

class LifecycleTest : public EndToEndTest {
protected:
    void expectCleanEnd() {
        const int status = simulator->Quit();
        ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }

    Bytes exchange(TestClient& client) {
        return client.Exchange(*simulator, tarnelRequest(versionMessage()));
    }

    const Bytes versionAnswer = fromHex("B1 6B 00 B5 01 00 07 0A 06 00 00 00");
};

TEST_F(LifecycleTest, EndsWithTheExactLineWhenThePortIsTaken) {
    const LoopbackListener otherProgram(kPluginPort);
    ::testing::internal::CaptureStderr();
    simulator = SimulatorProcess::StartOnly();
    const int status = simulator->WaitForEnd();
    const std::string errors = ::testing::internal::GetCapturedStderr();
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 5);
    EXPECT_EQ(simulator->LastLogMessage(),
              "Error@TcpServer::Init : bind() : Unknown Socket Error Code 98");
    EXPECT_EQ(errors.rfind("headless-sim: ", 0), 0U) << errors;
    EXPECT_NE(errors.find(": another program has the plugin's port; end that program"),
              std::string::npos)
        << errors;
}

TEST_F(LifecycleTest, WritesTheConfigurationFileAtTheFirstStartAndReadsItAtTheSecond) {
    const std::string ownDatarefs =
        "\nkyr/autopilot_external_control int"
        "\nkyr/autopilot_trigger_disable int"
        "\nkyr/external_forcescalefactor_active int_array 4"
        "\nkyr/external_forcescalefactor_value int_array 4";
    orvane::headless::Simulator().load(PLUGIN);
    EXPECT_EQ(directory.Read(kConfigFile), ownDatarefs);

    const std::string edited = ownDatarefs + "\nkyr/lamps int_array 3 # three lamps\n";
    directory.Write(kConfigFile, edited);
    orvane::headless::Simulator sim;
    sim.load(PLUGIN);
    EXPECT_EQ(directory.Read(kConfigFile), edited);
    EXPECT_EQ(sim.numbers("kyr/lamps"), std::vector<double>(3));
    EXPECT_EQ(sim.numbers("kyr/external_forcescalefactor_value"), std::vector<double>(4));
}

TEST_F(LifecycleTest, DeclaresAClientsDatarefInTheConfigurationFileOnce) {
    startSimulator();
    const std::string before = directory.Read(kConfigFile);
    TestClient client;
    for (int i = 0; i < 2; ++i) {
        client.Exchange(*simulator,
                        tarnelRequest(definitionsMessage(
                            {}, {{.id = 1, .name = "kyr/gauge", .type = RecordType::Float}})));
    }
    EXPECT_EQ(directory.Read(kConfigFile), before + "\nkyr/gauge float");
}

TEST_F(LifecycleTest, ListensAgainRightAfterARestartUnderAConnectedClient) {
    startSimulator();
    TestClient client;
    ASSERT_EQ(exchange(client), versionAnswer);
    expectCleanEnd();
    startSimulator();
    EXPECT_TRUE(client.IsClosedByServer(*simulator));
    TestClient again;
    EXPECT_EQ(exchange(again), versionAnswer);
}

TEST_F(LifecycleTest, ServesAgainAfterStopAndStartInOneProcess) {
    startSimulator();
    TestClient client;
    ASSERT_EQ(exchange(client), versionAnswer);
    EXPECT_TRUE(simulator->Ask("stop").starts_with("ok"));
    EXPECT_TRUE(client.IsClosedByServer(*simulator));
    EXPECT_TRUE(simulator->Ask("start").starts_with("ok"));
    TestClient again;
    EXPECT_EQ(exchange(again), versionAnswer);
}

// The simulator calls no flight loop of a disabled plugin.
TEST_F(LifecycleTest, ARequestWaitsWhileThePluginIsDisabled) {
    startSimulator();
    TestClient client;
    EXPECT_EQ(exchange(client), versionAnswer);
    simulator->Ask("disable");
    client.Send(tarnelRequest(versionMessage()));
    simulator->Step(10);
    EXPECT_TRUE(client.Received().empty());
    simulator->Ask("enable");
    EXPECT_EQ(client.Answer(*simulator), versionAnswer);
}

TEST_F(LifecycleTest, StopsWhileAnAnswerIsHalfSent) {
    startSimulator();
    TestClient client(4096);
    client.Send(tarnelRequest(
        definitionsMessage({}, {{.id = 1, .name = "test/floats", .type = 4, .count = 4'000'000}})));
    simulator->Step(10);
    ASSERT_FALSE(client.Received().empty());
    expectCleanEnd();
}

TEST_F(LifecycleTest, UnloadsWithACommandSubscribedAndPressesItAfterwards) {
    startSimulator();
    TestClient client;
    client.Exchange(*simulator, tarnelRequest(definitionsMessage(
                                    {}, {{.id = 1, .name = "kyr/test_command", .type = 6}})));
    EXPECT_TRUE(simulator->Ask("stop").starts_with("ok"));
    EXPECT_TRUE(simulator->Ask("command once kyr/test_command").starts_with("ok"));
    expectCleanEnd();
}

TEST_F(LifecycleTest, PassesACommandOnAfterItsClientHasGone) {
    startSimulator();
    {
        TestClient client;
        client.Exchange(*simulator, tarnelRequest(definitionsMessage(
                                        {}, {{.id = 1, .name = "kyr/test_command", .type = 6}})));
    }
    simulator->Step(5);
    EXPECT_TRUE(simulator->Ask("command once kyr/test_command").starts_with("ok"));
    EXPECT_NE(simulator->Ask("events kyr/test_command").find(" begin=1"), std::string::npos)
        << simulator->Ask("events kyr/test_command");
}

TEST_F(LifecycleTest, TracesOnlyWhenTheMarkerFileExists) {
    const auto logOfAStart = [] {
        orvane::headless::Simulator sim;
        sim.load(PLUGIN);
        sim.runFrames();
        return sim.log();
    };
    EXPECT_TRUE(logOfAStart().empty());
    directory.Write("XPLANEORVANE_VERBOSE", "");
    const std::vector<std::string> traced = logOfAStart();
    ASSERT_FALSE(traced.empty());
    EXPECT_EQ(messageOf(traced.front()), "PluginStart");
}

} // namespace
