#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PluginObjects.h"
#include "headless/xplm/Simulator.h"
#include "plugin/PluginCallbacks.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PluginCallbacksTest : public testing::Test {
protected:
    void start() {
        char texts[3][256];
        ASSERT_EQ(objects.plugin.XPluginStart(texts[0], texts[1], texts[2]), 1);
        objects.provider.calls.clear();
    }

    headless::Simulator simulator;
    PluginObjects objects;
};

TEST_F(PluginCallbacksTest, DoNothingInAFlightLoopWithoutAPlugin) {
    EXPECT_EQ(MyFlightLoopCallback(0.02F, 0.02F, 1, nullptr), -1.0F);
    EXPECT_THAT(objects.provider.calls, IsEmpty());
}

TEST_F(PluginCallbacksTest, ForwardAFlightLoop) {
    start();
    objects.Publish();
    EXPECT_EQ(MyFlightLoopCallback(0.02F, 0.02F, 1, nullptr), -1.0F);
    EXPECT_THAT(objects.provider.calls, ElementsAre("ProcessFlightLoop"));
}

TEST_F(PluginCallbacksTest, KeepAnExceptionOfAFlightLoopFromTheSimulator) {
    objects.Publish();
    objects.provider.onCall = [] { throw std::runtime_error("out of memory"); };
    EXPECT_EQ(MyFlightLoopCallback(0.02F, 0.02F, 1, nullptr), -1.0F);
    EXPECT_THAT(objects.provider.calls, ElementsAre("ProcessFlightLoop"));
}

TEST_F(PluginCallbacksTest, LetACommandGoOnWithoutAPlugin) {
    objects.observer.commandResult = 0;
    EXPECT_EQ(MyCommandCallBack(&objects, 0, nullptr), 1);
    EXPECT_EQ(objects.observer.commandsHandled, 0);
}

TEST_F(PluginCallbacksTest, ForwardACommand) {
    objects.Publish();
    int refcon = 0;
    for (const int result : {0, 1}) {
        objects.observer.commandResult = result;
        EXPECT_EQ(MyCommandCallBack(&objects, 1, &refcon), result);
    }
    EXPECT_EQ(objects.observer.commandsHandled, 2);
    EXPECT_EQ(objects.observer.lastCommand, &objects);
    EXPECT_EQ(objects.observer.lastPhase, 1);
    EXPECT_EQ(objects.observer.lastRefcon, &refcon);
}

TEST_F(PluginCallbacksTest, KeepAnExceptionOfACommandFromTheSimulator) {
    objects.Publish();
    objects.observer.commandResult = 0;
    objects.observer.onCommand = [] { throw std::runtime_error("out of memory"); };
    EXPECT_EQ(MyCommandCallBack(&objects, 0, nullptr), 1);
    EXPECT_EQ(objects.observer.commandsHandled, 1);
}

} // namespace
