#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "XPLMProcessing.h"
#include "headless/xplm/Simulator.h"

using headless::Refusal;
using headless::Simulator;

namespace {

struct Trace {
    std::vector<std::string> calls;
    std::string name;
    float next = 0.0F;
    float sinceLast = 0.0F;
    XPLMFlightLoopID destroys = nullptr;
};

float trace(float sinceLast, float /*sinceLoop*/, int counter, void* refcon) {
    auto& own = *static_cast<Trace*>(refcon);
    own.calls.push_back(std::to_string(counter));
    own.sinceLast = sinceLast;
    if (own.destroys != nullptr) {
        XPLMDestroyFlightLoop(own.destroys);
    }
    return own.next;
}

XPLMFlightLoopID create(Trace& trace_, XPLMFlightLoopPhaseType phase) {
    XPLMCreateFlightLoop_t parameters{sizeof parameters, phase, &trace, &trace_};
    return XPLMCreateFlightLoop(&parameters);
}

} // namespace

class CreatedFlightLoopsTest : public ::testing::Test {
protected:
    Simulator sim;
    Trace loop;
};

TEST_F(CreatedFlightLoopsTest, AreNotCalledBeforeTheyAreScheduled) {
    const XPLMFlightLoopID id = create(loop, xplm_FlightLoop_Phase_BeforeFlightModel);
    sim.RunFrame(0.1);
    EXPECT_TRUE(loop.calls.empty());
    XPLMScheduleFlightLoop(id, -1.0F, 1);
    sim.RunFrame(0.1);
    EXPECT_EQ(loop.calls, (std::vector<std::string>{"2"}));
    sim.RunFrame(0.1);
    EXPECT_EQ(loop.calls.size(), 1U) << "it answered 0";
}

TEST_F(CreatedFlightLoopsTest, RunAfterTheFlightModelWhenAskedTo) {
    loop.next = -1.0F;
    XPLMScheduleFlightLoop(create(loop, xplm_FlightLoop_Phase_AfterFlightModel), -1.0F, 1);
    sim.RunFrame(0.1);
    EXPECT_TRUE(loop.calls.empty()) << "the flight model has not run in this frame";
    sim.RunFrame(0.1);
    sim.RunFrame(0.1);
    EXPECT_EQ(loop.calls, (std::vector<std::string>{"1", "2"}));
}

TEST_F(CreatedFlightLoopsTest, CountFromTheLastCallWhenNotRelativeToNow) {
    loop.next = 10.0F;
    const XPLMFlightLoopID id = create(loop, xplm_FlightLoop_Phase_BeforeFlightModel);
    XPLMScheduleFlightLoop(id, -1.0F, 1);
    sim.RunFrame(1.0);
    sim.RunFrame(1.0);
    XPLMScheduleFlightLoop(id, 2.0F, 0);
    sim.RunFrame(1.0);
    EXPECT_EQ(loop.calls.size(), 2U);
    EXPECT_EQ(loop.sinceLast, 2.0F);
}

TEST_F(CreatedFlightLoopsTest, MayDestroyThemselves) {
    loop.next = -1.0F;
    loop.destroys = create(loop, xplm_FlightLoop_Phase_BeforeFlightModel);
    XPLMScheduleFlightLoop(loop.destroys, -1.0F, 1);
    sim.RunFrame(0.1);
    sim.RunFrame(0.1);
    EXPECT_EQ(loop.calls.size(), 1U);
    EXPECT_EQ(sim.Loops().Count(), 0U);
    XPLMScheduleFlightLoop(loop.destroys, -1.0F, 1);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::UnknownHandle), 1U);
}

TEST_F(CreatedFlightLoopsTest, ARegisteredCallbackGetsANewInterval) {
    loop.next = -1.0F;
    XPLMRegisterFlightLoopCallback(&trace, 100.0F, &loop);
    sim.RunFrame(1.0);
    XPLMSetFlightLoopCallbackInterval(&trace, -1.0F, 1, &loop);
    sim.RunFrame(1.0);
    EXPECT_EQ(loop.calls.size(), 1U);
    XPLMSetFlightLoopCallbackInterval(&trace, 1.0F, 1, nullptr);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NotRegistered), 1U);
}

TEST_F(CreatedFlightLoopsTest, TimeAndCycleAreThoseOfTheFrame) {
    EXPECT_EQ(XPLMGetElapsedTime(), 0.0F);
    EXPECT_EQ(XPLMGetCycleNumber(), 0);
    sim.RunFrame(0.5);
    sim.RunFrame(0.5);
    EXPECT_EQ(XPLMGetElapsedTime(), 1.0F);
    EXPECT_EQ(XPLMGetCycleNumber(), 2);
}
