#include <vector>

#include <gtest/gtest.h>

#include "XPLMProcessing.h"
#include "headless/xplm/Simulator.h"
#include "headless/xplm/processing/FlightLoops.h"

using headless::Refusal;
using headless::Simulator;

namespace {

// What a callback was called with, and the interval that it asks for.
struct Probe {
    float answer = -1.0F;
    std::vector<int> frames;
    std::vector<float> sinceCall;
    std::vector<float> sinceLoop;
};

float probe(float sinceCall, float sinceLoop, int frame, void* refcon) {
    auto* called = static_cast<Probe*>(refcon);
    called->frames.push_back(frame);
    called->sinceCall.push_back(sinceCall);
    called->sinceLoop.push_back(sinceLoop);
    return called->answer;
}

float unregisterMyself(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* refcon) {
    ++*static_cast<int*>(refcon);
    XPLMUnregisterFlightLoopCallback(&unregisterMyself, refcon);
    return -1.0F;
}

float registerMany(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* refcon) {
    auto* probes = static_cast<std::vector<Probe>*>(refcon);
    for (Probe& added : *probes) {
        XPLMRegisterFlightLoopCallback(&probe, -1.0F, &added);
    }
    return 0.0F;
}

} // namespace

class FlightLoopsTest : public ::testing::Test {
protected:
    void run(int frames, double seconds = 0.1) {
        for (int i = 0; i < frames; ++i) {
            sim.RunFrame(seconds);
        }
    }

    Simulator sim;
    Probe called;
};

TEST_F(FlightLoopsTest, ANegativeIntervalCountsFlightLoops) {
    XPLMRegisterFlightLoopCallback(&probe, -2.0F, &called);
    run(5);
    EXPECT_EQ(called.frames, (std::vector<int>{2, 3, 4, 5}));
}

TEST_F(FlightLoopsTest, TheResultIsTheNextInterval) {
    called.answer = -3.0F;
    XPLMRegisterFlightLoopCallback(&probe, -1.0F, &called);
    run(8);
    EXPECT_EQ(called.frames, (std::vector<int>{1, 4, 7}));
}

TEST_F(FlightLoopsTest, APositiveIntervalCountsSimulatedSeconds) {
    called.answer = 0.25F;
    XPLMRegisterFlightLoopCallback(&probe, 0.5F, &called);
    run(12);
    EXPECT_EQ(called.frames, (std::vector<int>{5, 8, 11}));
}

TEST_F(FlightLoopsTest, ASumOfFramesThatIsTheIntervalIsEnough) {
    called.answer = 1.0F;
    XPLMRegisterFlightLoopCallback(&probe, 1.0F, &called);
    run(30, 0.1);
    EXPECT_EQ(called.frames, (std::vector<int>{10, 20, 30}));
}

TEST_F(FlightLoopsTest, AnIntervalOfZeroIsNever) {
    XPLMRegisterFlightLoopCallback(&probe, 0.0F, &called);
    run(3);
    EXPECT_TRUE(called.frames.empty());
    XPLMRegisterFlightLoopCallback(&probe, -1.0F, &called);
    called.answer = 0.0F;
    run(3);
    EXPECT_EQ(called.frames, (std::vector<int>{4}));
    EXPECT_EQ(sim.Loops().Count(), 1U);
}

TEST_F(FlightLoopsTest, ToldAreTheTimesSinceTheLastCallAndTheLastLoop) {
    called.answer = -2.0F;
    XPLMRegisterFlightLoopCallback(&probe, -2.0F, &called);
    run(4, 0.5);
    EXPECT_EQ(called.sinceCall, (std::vector<float>{1.0F, 1.0F}));
    EXPECT_EQ(called.sinceLoop, (std::vector<float>{0.5F, 0.5F}));
}

TEST_F(FlightLoopsTest, RegisteringAPairAgainChangesItsInterval) {
    XPLMRegisterFlightLoopCallback(&probe, -1.0F, &called);
    XPLMRegisterFlightLoopCallback(&probe, -4.0F, &called);
    run(4);
    EXPECT_EQ(called.frames, (std::vector<int>{4}));
    EXPECT_EQ(sim.Loops().Count(), 1U);
}

TEST_F(FlightLoopsTest, CallbackAndRefconTogetherAreTheIdentity) {
    Probe other;
    XPLMRegisterFlightLoopCallback(&probe, -1.0F, &called);
    XPLMRegisterFlightLoopCallback(&probe, -1.0F, &other);
    XPLMUnregisterFlightLoopCallback(&probe, &called);
    run(1);
    EXPECT_TRUE(called.frames.empty());
    EXPECT_EQ(other.frames, (std::vector<int>{1}));
}

TEST_F(FlightLoopsTest, UnregisteringWhatIsNotRegisteredIsHarmlessAndRecorded) {
    XPLMUnregisterFlightLoopCallback(&probe, &called);
    XPLMRegisterFlightLoopCallback(nullptr, -1.0F, nullptr);
    EXPECT_EQ(sim.Recorder().Refusals(Refusal::NotRegistered), 1U);
    EXPECT_EQ(sim.Recorder().NullHandleCalls(), 1U);
    run(1);
}

TEST_F(FlightLoopsTest, ACallbackMayUnregisterItself) {
    int calls = 0;
    XPLMRegisterFlightLoopCallback(&unregisterMyself, -1.0F, &calls);
    XPLMRegisterFlightLoopCallback(&probe, -1.0F, &called);
    run(2);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(called.frames, (std::vector<int>{1, 2}));
    EXPECT_EQ(sim.Loops().Count(), 1U);
}

TEST_F(FlightLoopsTest, CallbacksRegisteredDuringAFrameAreCalledFromTheNextFrameOn) {
    std::vector<Probe> probes(50);
    XPLMRegisterFlightLoopCallback(&registerMany, -1.0F, &probes);
    run(2);
    for (const Probe& added : probes) {
        EXPECT_EQ(added.frames, (std::vector<int>{2}));
    }
}

TEST_F(FlightLoopsTest, RecordsRegistrationWithItsInterval) {
    sim.Recorder().Enable();
    XPLMRegisterFlightLoopCallback(&probe, -2.0F, &called);
    XPLMUnregisterFlightLoopCallback(&probe, &called);
    ASSERT_EQ(sim.Recorder().Calls().size(), 2U);
    EXPECT_EQ(sim.Recorder().Calls()[0].function, "XPLMRegisterFlightLoopCallback");
    EXPECT_EQ(sim.Recorder().Calls()[0].arguments, "-2");
    EXPECT_EQ(sim.Recorder().Calls()[1].function, "XPLMUnregisterFlightLoopCallback");
}
