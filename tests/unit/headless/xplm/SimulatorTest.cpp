#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "headless/xplm/Simulator.h"

using headless::Refusal;
using headless::Simulator;

namespace {

float countUp(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* refcon) {
    ++*static_cast<int*>(refcon);
    return -1.0F;
}

int seeWhetherLoopRan(XPLMCommandRef /*command*/, XPLMCommandPhase phase, void* refcon) {
    if (phase == xplm_CommandContinue) {
        *static_cast<int*>(refcon) *= 10;
    }
    return 1;
}

} // namespace

TEST(SimulatorTest, TheLastOneMadeIsCurrentUntilItIsGone) {
    Simulator outer;
    outer.Datarefs().Define({"outer/a", xplmType_Int});
    {
        Simulator inner;
        EXPECT_EQ(&Simulator::Current(), &inner);
        EXPECT_EQ(XPLMFindDataRef("outer/a"), nullptr);
    }
    EXPECT_EQ(&Simulator::Current(), &outer);
    EXPECT_NE(XPLMFindDataRef("outer/a"), nullptr);
}

TEST(SimulatorTest, ThereIsOneForTheProcessWhenNobodyMadeOne) {
    Simulator& first = Simulator::Current();
    { const Simulator passing; }
    EXPECT_EQ(&Simulator::Current(), &first);
}

TEST(SimulatorTest, TimeMovesOnlyWithFrames) {
    Simulator sim;
    EXPECT_EQ(sim.Clock().Now(), 0.0);
    sim.RunFrame(0.5);
    sim.RunFrame(0.25);
    EXPECT_EQ(sim.Clock().Now(), 0.75);
    EXPECT_EQ(sim.Clock().Frame(), 2);
}

TEST(SimulatorTest, HeldCommandsContinueBeforeTheFlightLoopsRun) {
    Simulator sim;
    int trace = 1;
    XPLMCommandRef command = XPLMCreateCommand("t/held", "Held");
    XPLMRegisterCommandHandler(command, &seeWhetherLoopRan, 1, &trace);
    XPLMRegisterFlightLoopCallback(&countUp, -1.0F, &trace);
    XPLMCommandBegin(command);
    sim.RunFrame(0.1);
    EXPECT_EQ(trace, 11);
}

TEST(SimulatorTest, DebugStringGoesToTheLog) {
    Simulator sim;
    XPLMDebugString("hello\n");
    XPLMDebugString(nullptr);
    EXPECT_EQ(sim.Log().Text(), "hello\n");
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NullText), 1U);
}

TEST(SimulatorTest, DroppingRegistrationsLeavesTheSimulatorAlone) {
    Simulator sim;
    int trace = 1;
    sim.Datarefs().Define({"sim/a", xplmType_Int});
    XPLMCommandRef command = XPLMCreateCommand("t/held", "Held");
    XPLMRegisterCommandHandler(command, &seeWhetherLoopRan, 1, &trace);
    XPLMRegisterFlightLoopCallback(&countUp, -1.0F, &trace);
    sim.Datarefs().Register("plugin/a", xplmType_Int, true, {});
    sim.DropRegistrations();
    XPLMCommandBegin(command);
    sim.RunFrame(0.1);
    EXPECT_EQ(trace, 1);
    EXPECT_EQ(XPLMFindDataRef("plugin/a"), nullptr);
    EXPECT_NE(XPLMFindDataRef("sim/a"), nullptr);
    EXPECT_EQ(XPLMFindCommand("t/held"), command);
}
