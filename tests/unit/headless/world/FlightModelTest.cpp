#include <string>

#include <gtest/gtest.h>

#include "headless/world/DefaultWorld.h"
#include "headless/world/FlightModel.h"

using headless::FlightModel;
using headless::installDefaultWorld;
using headless::Simulator;

class FlightModelTest : public ::testing::Test {
protected:
    FlightModelTest() { installDefaultWorld(sim); }

    void fly(double seconds) {
        const FlightModel model(sim);
        for (int frame = 0; frame < static_cast<int>(seconds * 60); ++frame) {
            model.Advance(1.0 / 60);
        }
    }

    float value(const std::string& name) { return sim.Datarefs().GetFloat("sim/" + name); }
    double place(const std::string& name) { return sim.Datarefs().GetDouble("sim/" + name); }
    void set(const std::string& name, float number) {
        sim.Datarefs().SetFloat("sim/" + name, number);
    }

    Simulator sim;
};

TEST_F(FlightModelTest, HandsOffItFliesStraightAndLevel) {
    const double startLatitude = place("flightmodel/position/latitude");
    fly(60);
    EXPECT_NEAR(value("flightmodel/position/phi"), 0.0F, 0.01F);
    EXPECT_NEAR(value("flightmodel/position/true_airspeed"), 60.0F, 1.0F);
    EXPECT_NEAR(place("flightmodel/position/elevation"), 1500.0, 1.0);
    // North at 60 m/s for a minute is 3.6 km.
    EXPECT_NEAR(place("flightmodel/position/latitude") - startLatitude, 3600.0 / 111320, 1e-3);
}

TEST_F(FlightModelTest, TheYokeRollsAndTheRollTurns) {
    set("cockpit2/controls/yoke_roll_ratio", 0.5F);
    fly(1);
    EXPECT_GT(value("flightmodel/position/P"), 0.0F);
    EXPECT_GT(value("flightmodel/forces/L_aero"), 0.0F);
    EXPECT_GT(value("flightmodel/position/phi"), 10.0F);
    set("cockpit2/controls/yoke_roll_ratio", 0.0F);
    fly(5);
    EXPECT_GT(value("flightmodel/position/psi"), 5.0F);
    EXPECT_LT(value("flightmodel/position/psi"), 180.0F);
}

TEST_F(FlightModelTest, PullingTheYokeClimbsAndCostsSpeed) {
    set("cockpit2/controls/yoke_pitch_ratio", 0.3F);
    fly(5);
    EXPECT_GT(place("flightmodel/position/elevation"), 1505.0);
    EXPECT_GT(value("flightmodel/position/vh_ind"), 0.0F);
    EXPECT_GT(value("cockpit2/gauges/indicators/vvi_fpm_pilot"), 0.0F);
    EXPECT_LT(value("flightmodel/position/true_airspeed"), 60.0F);
}

TEST_F(FlightModelTest, PedalsTurnTheNose) {
    set("cockpit2/controls/yoke_heading_ratio", -1.0F);
    fly(1);
    EXPECT_GT(value("flightmodel/position/psi"), 270.0F);
    EXPECT_LT(value("flightmodel/forces/N_aero"), 0.0F);
}

TEST_F(FlightModelTest, TheThrottleSetsTheSpeed) {
    sim.Datarefs().SetFloatArray("sim/cockpit2/engine/actuators/throttle_ratio", {1.0F});
    fly(10);
    EXPECT_GT(value("flightmodel/position/indicated_airspeed"), 125.0F);
}

TEST_F(FlightModelTest, EveryInputAtItsStopLeavesFiniteNumbers) {
    for (const char* control : {"yoke_pitch_ratio", "yoke_roll_ratio", "yoke_heading_ratio"}) {
        set(std::string("cockpit2/controls/") + control, -1.0F);
    }
    sim.Datarefs().SetFloatArray("sim/cockpit2/engine/actuators/throttle_ratio", {1.0F});
    fly(600);
    EXPECT_GE(place("flightmodel/position/elevation"), 0.0);
    EXPECT_LE(value("flightmodel/position/true_airspeed"), 150.0F);
    EXPECT_GE(value("flightmodel/position/phi"), -70.0F);
    EXPECT_LT(value("flightmodel/position/psi"), 360.0F);
}

TEST_F(FlightModelTest, NothingMovesWhilePaused) {
    const double start = place("flightmodel/position/latitude");
    sim.Datarefs().SetInt("sim/time/paused", 1);
    fly(1);
    EXPECT_EQ(place("flightmodel/position/latitude"), start);
}

TEST(FlightModelInAnEmptyWorldTest, MissingDatarefsDoNoHarm) {
    Simulator empty;
    FlightModel(empty).Advance(0.1);
    EXPECT_TRUE(empty.Datarefs().Names().empty());
}
