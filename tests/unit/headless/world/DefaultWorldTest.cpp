#include "headless/world/DefaultWorld.h"

#include <gtest/gtest.h>

#include <string>

using headless::DefaultWorld;
using headless::Simulator;

class DefaultWorldTest : public ::testing::Test {
protected:
    Simulator sim;
};

TEST_F(DefaultWorldTest, HasTheWellKnownDatarefsAndCommands) {
    DefaultWorld::Install(sim);
    EXPECT_GE(sim.Datarefs().Names().size(), 60U);
    EXPECT_GE(sim.Commands().Names().size(), 30U);
    EXPECT_EQ(sim.Datarefs().GetFloat("sim/cockpit2/controls/yoke_pitch_ratio"), 0.0F);
    EXPECT_EQ(sim.Datarefs().GetFloatArray("sim/cockpit2/engine/actuators/throttle_ratio").size(),
              8U);
    EXPECT_EQ(sim.Datarefs().GetBytes("sim/aircraft/view/acf_descrip").size(), 260U);
    EXPECT_NE(sim.Datarefs().GetDouble("sim/flightmodel/position/latitude"), 0.0);
    EXPECT_NE(XPLMFindCommand("sim/flight_controls/landing_gear_toggle"), nullptr);
}

TEST_F(DefaultWorldTest, EveryDatarefOfItCanBeReadAndDescribesItself) {
    DefaultWorld::Install(sim);
    for (const std::string& name : sim.Datarefs().Names()) {
        const auto& definition = sim.Datarefs().Lookup(name)->Definition();
        EXPECT_FALSE(definition.description.empty()) << name;
        const bool isArray =
            (definition.types & (xplmType_IntArray | xplmType_FloatArray | xplmType_Data)) != 0;
        EXPECT_EQ(definition.elements > 0, isArray) << name;
    }
}

TEST_F(DefaultWorldTest, WhatIsDefinedAlreadyStays) {
    sim.Datarefs().Define({"sim/time/paused", xplmType_Float});
    sim.Commands().Define("sim/autopilot/heading", "Mine");
    DefaultWorld::Install(sim);
    EXPECT_EQ(sim.Datarefs().Lookup("sim/time/paused")->Definition().types, xplmType_Float);
    EXPECT_EQ(sim.Commands().Lookup("sim/autopilot/heading")->description, "Mine");
}
