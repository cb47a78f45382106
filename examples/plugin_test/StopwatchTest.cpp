#include <gtest/gtest.h>
#include <orvane/headless/Simulator.h>

// Each test has its own simulator and loads the plugin afresh.
class StopwatchTest : public testing::Test {
protected:
    orvane::headless::Simulator sim;
    orvane::headless::Plugin& plugin = sim.load(STOPWATCH);
};

TEST_F(StopwatchTest, CountsFromOnePressToTheNext) {
    sim.runSeconds(5);
    EXPECT_EQ(sim.number("stopwatch/seconds"), 0);
    sim.once("stopwatch/toggle");
    sim.runSeconds(10);
    sim.once("stopwatch/toggle");
    sim.runSeconds(5);
    EXPECT_NEAR(sim.number("stopwatch/seconds"), 10, 0.001);
    EXPECT_EQ(sim.log().back(), "Stopwatch: stopped");
}

TEST_F(StopwatchTest, StandsWhileTheSimulatorIsPaused) {
    sim.once("stopwatch/toggle");
    sim.setNumber("sim/time/paused", 1);
    sim.runSeconds(10);
    EXPECT_EQ(sim.number("stopwatch/seconds"), 0);
}

TEST_F(StopwatchTest, TheMenuShowsThatItRunsAndResetsIt) {
    sim.click("Stopwatch > Running");
    EXPECT_TRUE(sim.menu().at(1).checked);
    sim.runSeconds(3);
    sim.click("Stopwatch > Reset");
    EXPECT_EQ(sim.number("stopwatch/seconds"), 0);
}

TEST_F(StopwatchTest, AsksTheSimulatorOnceAFrameAndMakesNoMistake) {
    sim.once("stopwatch/toggle");
    sim.forget();
    sim.runFrames(100);
    EXPECT_EQ(sim.calls("XPLMGetDatai"), 100u);
    EXPECT_EQ(sim.calls("XPLMFindDataRef"), 0u);
    EXPECT_TRUE(sim.mistakes().empty());
}

TEST_F(StopwatchTest, TakesEverythingAlongWhenItGoes) {
    EXPECT_TRUE(sim.unload(plugin));
    EXPECT_FALSE(sim.hasDataref("stopwatch/seconds"));
    EXPECT_TRUE(sim.menu().empty());
}
