#include <string>

#include <gtest/gtest.h>

#include "headless/world/DefaultWorld.h"

using headless::installDefaultWorld;
using headless::Simulator;

class DefaultWorldTest : public ::testing::Test {
protected:
    Simulator sim;
};

TEST_F(DefaultWorldTest, HasTheWellKnownDatarefsAndCommands) {
    installDefaultWorld(sim);
    EXPECT_GE(sim.Datarefs().Names().size(), 60U);
    EXPECT_GE(sim.Commands().Names().size(), 30U);
    EXPECT_EQ(sim.Datarefs().GetFloat("sim/cockpit2/controls/yoke_pitch_ratio"), 0.0F);
    EXPECT_EQ(sim.Datarefs().GetFloatArray("sim/cockpit2/engine/actuators/throttle_ratio").size(),
              16U);
    EXPECT_EQ(sim.Datarefs().GetBytes("sim/aircraft/view/acf_descrip").size(), 260U);
    EXPECT_NE(sim.Datarefs().GetDouble("sim/flightmodel/position/latitude"), 0.0);
    EXPECT_NE(XPLMFindCommand("sim/flight_controls/landing_gear_toggle"), nullptr);
}

TEST_F(DefaultWorldTest, ADoubleIsReadAsAFloat) {
    installDefaultWorld(sim);
    const XPLMDataRef latitude = XPLMFindDataRef("sim/flightmodel/position/latitude");
    EXPECT_EQ(XPLMGetDataRefTypes(latitude), xplmType_Double | xplmType_Float);
    EXPECT_EQ(XPLMGetDataf(latitude), 47.26F);
    EXPECT_EQ(XPLMGetDatad(latitude), 47.26);
}

TEST_F(DefaultWorldTest, EachVersionHasItsSizes) {
    installDefaultWorld(sim, headless::worldVersion(10));
    EXPECT_EQ(sim.Datarefs().GetFloatArray("sim/cockpit2/engine/actuators/throttle_ratio").size(),
              8U);
    EXPECT_EQ(sim.Datarefs().GetFloatArray("sim/joystick/joystick_axis_values").size(), 100U);
    EXPECT_EQ(sim.Datarefs().GetInt("sim/version/xplane_internal_version"), 105100);
    EXPECT_EQ(sim.Version(), 10510);
    Simulator twelve;
    installDefaultWorld(twelve);
    EXPECT_EQ(
        twelve.Datarefs().GetFloatArray("sim/cockpit2/engine/actuators/throttle_ratio").size(),
        16U);
    EXPECT_EQ(twelve.Datarefs().GetFloatArray("sim/joystick/joystick_axis_values").size(), 500U);
    EXPECT_EQ(twelve.Version(), 12140);
}

TEST_F(DefaultWorldTest, WhatTheSimulatorLetsPluginsWriteIsWritable) {
    installDefaultWorld(sim);
    const auto writable = [&](const std::string& name) {
        return sim.Datarefs().Lookup(name)->Definition().writable;
    };
    for (const char* name :
         {"sim/time/total_running_time_sec", "sim/aircraft/view/acf_ICAO",
          "sim/flightmodel/position/true_airspeed", "sim/flightmodel/forces/L_aero",
          "sim/flightmodel/forces/M_aero", "sim/flightmodel/forces/N_aero",
          "sim/flightmodel/failures/onground_any", "sim/cockpit/autopilot/autopilot_state"}) {
        EXPECT_TRUE(writable(name)) << name;
    }
    EXPECT_FALSE(writable("sim/joystick/has_joystick"));
    EXPECT_FALSE(writable("sim/joystick/joystick_axis_values"));
    EXPECT_EQ(sim.Datarefs().Lookup("sim/cockpit2/autopilot/autopilot_state"), nullptr);
}

TEST_F(DefaultWorldTest, EveryDatarefOfItCanBeReadAndDescribesItself) {
    installDefaultWorld(sim);
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
    installDefaultWorld(sim);
    EXPECT_EQ(sim.Datarefs().Lookup("sim/time/paused")->Definition().types, xplmType_Float);
    EXPECT_EQ(sim.Commands().Lookup("sim/autopilot/heading")->description, "Mine");
}
