#include <csignal>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "e2e/SimulatorProcess.h"
#include "e2e/ToolRun.h"
#include "support/Deadline.h"
#include "support/TemporaryDirectory.h"
#include "support/Text.h"

namespace {

// Programs of the library's users, run against the real plugin while the simulator flies; with the
// static and with the shared library.
class ExamplesTest : public testing::TestWithParam<const char*> {
protected:
    ExamplesTest() {
        directory.MakePluginsFolder();
        fly();
    }

    void fly() {
        simulator = std::make_unique<SimulatorProcess>(std::vector<std::string>{"--hz", "200"});
        simulator->Ask("aircraft load Test aircraft");
        simulator->Ask("run");
    }

    // Waits until the simulator has counted this many begins and ends of the brakes.
    void waitForBrakes(const std::string& begun, const std::string& ended) {
        std::string events;
        EXPECT_TRUE(
            driveUntil([&] { events = simulator->Ask("events sim/flight_controls/brakes_max"); },
                       [&] {
                           return events.find(" begin=" + begun + " ") != std::string::npos &&
                                  events.find(" end=" + ended + " ") != std::string::npos;
                       }))
            << events;
    }

    static std::string folder(const std::string& name) {
        return std::string(CONSUMER_FOLDER) + "/" + GetParam() + "/" + name + "/";
    }

    static std::vector<std::string> example(const std::string& call) {
        return linesOf(outputOf(folder("examples") + call));
    }

    float get(const std::string& dataref) { return std::stof(simulator->Get(dataref)); }

    TemporaryDirectory directory;
    std::unique_ptr<SimulatorProcess> simulator;
};

TEST_P(ExamplesTest, TheSineMovesTheYoke) {
    const auto lines = example("axis_sine 127.0.0.1 0.5");
    ASSERT_GE(lines.size(), 2U);
    // Half a second into a period of four: sin(45 degrees), less if the machine was late.
    const float yoke = get("sim/cockpit2/controls/yoke_pitch_ratio");
    EXPECT_GT(yoke, 0.05F);
    EXPECT_LT(yoke, 0.72F);
    EXPECT_NE(lines.back().find("yoke +0."), std::string::npos) << lines.back();
}

TEST_P(ExamplesTest, TheGaugeShowsTheInstruments) {
    simulator->Ask("pause");
    simulator->Ask("set sim/time/paused 1");
    simulator->Ask("set sim/cockpit2/gauges/indicators/airspeed_kts_pilot 123.5");
    simulator->Ask("set sim/cockpit2/gauges/indicators/altitude_ft_pilot 4321");
    simulator->Ask("run");
    const auto lines = example("gauge 127.0.0.1 0.3");
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front().substr(0, 22), "123.5 kt     4321 ft  ");
}

TEST_P(ExamplesTest, TheForceFollowsYokeAndSpeed) {
    simulator->Ask("set sim/cockpit2/controls/yoke_pitch_ratio 0.5");
    const auto lines = example("force_feel 127.0.0.1 0.3");
    ASSERT_GE(lines.size(), 3U);
    EXPECT_NE(lines.back().find("yoke +0.500"), std::string::npos) << lines.back();
    // Pulling is pushed back, and the plugin's own dataref has the force.
    const float knots = get("sim/cockpit2/gauges/indicators/airspeed_kts_pilot");
    const float force = get("kyr/example/pitch_force");
    EXPECT_NEAR(force, -0.5F * (knots / 110) * (knots / 110) * 120, 10.0F);
}

TEST_P(ExamplesTest, TheButtonHoldsTheBrakesAcrossARestartAndLetsGoAtCtrlC) {
    simulator.reset();
    ToolSetting setting;
    setting.program = folder("examples") + "held_button";
    ToolRun button({}, setting);
    button.WaitForOut("waiting for the simulator at 127.0.0.1\n");
    fly();
    waitForBrakes("1", "0");
    simulator.reset();
    button.WaitForOut("127.0.0.1:48000: exchanging values: ");
    fly();
    button.WaitForOut("connected again\n");
    waitForBrakes("1", "1"); // what the new simulator never held is let go there, and then held
    button.Signal(SIGINT);
    const ToolResult result = button.Wait();
    EXPECT_EQ(result.exitCode, 0) << result.err;
    waitForBrakes("1", "2");
}

TEST_P(ExamplesTest, ThePagesProgramsRun) {
    int programs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder("page"))) {
        const std::string name = entry.path().filename();
        if ((name == "my_panel" || name.rfind("program_", 0) == 0) &&
            entry.path().extension().empty()) {
            const auto lines = linesOf(outputOf(entry.path()));
            EXPECT_FALSE(lines.empty()) << name;
            for (const std::string& line : lines) {
                EXPECT_EQ(line.find("127.0.0.1:48000: "), std::string::npos)
                    << name << ": " << line;
            }
            ++programs;
        }
    }
    EXPECT_EQ(programs, 8);  // the first once more, built with pkg-config
    waitForBrakes("1", "1"); // one of them holds, and lets go
}

INSTANTIATE_TEST_SUITE_P(WithTheLibrary, ExamplesTest, testing::Values("Static", "Shared"),
                         [](const auto& each) { return std::string(each.param); });

} // namespace
