
#include <gtest/gtest.h>

#include "headless/world/CommandEffects.h"
#include "headless/world/DefaultWorld.h"

using headless::installCommandEffects;
using headless::installDefaultWorld;
using headless::Simulator;

class CommandEffectsTest : public ::testing::Test {
protected:
    CommandEffectsTest() {
        installDefaultWorld(sim);
        installCommandEffects(sim);
    }

    void once(const char* name) { XPLMCommandOnce(XPLMFindCommand(name)); }
    float flaps() { return sim.Datarefs().GetFloat("sim/cockpit2/controls/flap_ratio"); }
    int gear() { return sim.Datarefs().GetInt("sim/cockpit2/controls/gear_handle_down"); }

    Simulator sim;
};

TEST_F(CommandEffectsTest, TheGearIsToggledOncePerPress) {
    once("sim/flight_controls/landing_gear_toggle");
    EXPECT_EQ(gear(), 0);
    once("sim/flight_controls/landing_gear_toggle");
    EXPECT_EQ(gear(), 1);
    once("sim/flight_controls/landing_gear_up");
    once("sim/flight_controls/landing_gear_up");
    EXPECT_EQ(gear(), 0);
}

TEST_F(CommandEffectsTest, FlapsMoveByNotchesBetweenTheirStops) {
    once("sim/flight_controls/flaps_up");
    EXPECT_EQ(flaps(), 0.0F);
    once("sim/flight_controls/flaps_down");
    EXPECT_EQ(flaps(), 0.25F);
    for (int i = 0; i < 9; ++i) {
        once("sim/flight_controls/flaps_down");
    }
    EXPECT_EQ(flaps(), 1.0F);
}

TEST_F(CommandEffectsTest, TrimMovesOnEveryFrameThatItIsHeld) {
    XPLMCommandRef trim = XPLMFindCommand("sim/flight_controls/pitch_trim_up");
    XPLMCommandBegin(trim);
    sim.RunFrame(0.1);
    sim.RunFrame(0.1);
    XPLMCommandEnd(trim);
    EXPECT_NEAR(sim.Datarefs().GetFloat("sim/cockpit2/controls/elevator_trim"), 0.03F, 1e-6F);
}

TEST_F(CommandEffectsTest, ASwallowedCommandHasNoEffect) {
    XPLMRegisterCommandHandler(
        XPLMFindCommand("sim/flight_controls/flaps_down"),
        [](XPLMCommandRef, XPLMCommandPhase, void*) { return 0; }, 1, nullptr);
    once("sim/flight_controls/flaps_down");
    EXPECT_EQ(flaps(), 0.0F);
}

TEST(CommandEffectsInAnEmptyWorldTest, CommandsThatDoNotExistAreLeftOut) {
    Simulator empty;
    installCommandEffects(empty);
    EXPECT_TRUE(empty.Commands().Names().empty());
}
