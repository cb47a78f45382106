#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "XPLMDataAccess.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"
#include "headless/xplm/Simulator.h"

using headless::PluginContext;
using headless::Simulator;

namespace {

using Events = std::vector<std::string>;

class RecordingObserver final : public headless::IPluginObserver {
public:
    void FrameBegan() override { events.emplace_back("frame"); }
    void FrameEnded(double seconds) override {
        events.push_back("frame of " + std::to_string(seconds));
    }
    void Called(const char* function) override { events.emplace_back(function); }
    void Switched(XPLMPluginID plugin) override {
        events.push_back("plugin " + std::to_string(plugin));
    }
    void Logged(const char* text) override { events.push_back(std::string("log ") + text); }

    Events Take() { return std::exchange(events, {}); }

private:
    Events events;
};

float logOnce(float /*sinceCall*/, float /*sinceLoop*/, int /*frame*/, void* /*refcon*/) {
    XPLMDebugString("here");
    return 0.0F;
}

int readSeven(void* /*refcon*/) {
    return 7;
}

} // namespace

class PluginObserverTest : public testing::Test {
protected:
    PluginObserverTest() { sim.Observe(&observer); }

    Simulator sim;
    RecordingObserver observer;
};

TEST_F(PluginObserverTest, SeesEachCallAndWhoseCodeRuns) {
    {
        const PluginContext::Call call(sim.Context(), 3, "XPluginStart");
        XPLMRegisterFlightLoopCallback(&logOnce, -1.0F, nullptr);
    }
    EXPECT_EQ(observer.Take(), (Events{"plugin 3", "XPLMRegisterFlightLoopCallback", "plugin 0"}));
    sim.RunFrame(0.1);
    EXPECT_EQ(observer.Take(), (Events{"frame", "plugin 3", "XPLMDebugString", "log here",
                                       "plugin 0", "frame of 0.100000"}));
}

TEST_F(PluginObserverTest, APluginThatAsksAnotherGivesWay) {
    {
        const PluginContext::Call call(sim.Context(), 3, "XPluginStart");
        sim.Datarefs().Register("three/seven", xplmType_Int, false, {.readInt = &readSeven});
    }
    const PluginContext::Call call(sim.Context(), 4, "flight loop");
    const XPLMDataRef dataref = XPLMFindDataRef("three/seven");
    observer.Take();
    XPLMGetDatai(dataref);
    EXPECT_EQ(observer.Take(), (Events{"XPLMGetDatai", "plugin 3", "plugin 4"}));
}

TEST_F(PluginObserverTest, DoesNotSeeOtherThreads) {
    std::thread([] { XPLMDebugString("elsewhere\n"); }).join();
    EXPECT_EQ(observer.Take(), Events{});
    EXPECT_EQ(sim.Log().Lines().size(), 2U) << "they are reported all the same";
}

TEST_F(PluginObserverTest, SeesNothingWhenNobodyObservesAnyMore) {
    sim.Observe(nullptr);
    XPLMGetElapsedTime();
    EXPECT_EQ(observer.Take(), Events{});
}
