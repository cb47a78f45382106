// What headless-sim does to plugins when it is asked to.

#include <chrono>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HeadlessSimRun.h"

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class FaultsTest : public HeadlessSimRun {
protected:
    // What the asking plugin got in one frame.
    std::string ask(const std::string& options) {
        EXPECT_EQ(run(options + " " ASKING_PLUGIN " --console --paused", "step 1\n"), 0) << errors;
        return log();
    }

    void expectUsageError(const std::string& options, const std::string& error) {
        EXPECT_EQ(run(options + " " ASKING_PLUGIN), 2);
        EXPECT_EQ(errors, "headless-sim: " + error + "\n");
    }
};

TEST_F(FaultsTest, WithoutThemThePluginGetsWhatItAsksFor) {
    EXPECT_THAT(ask(""), StartsWith("dataref 1\ndataref 1\ndataref 1\nplugin 1\nmenu item 0\n"
                                    "probe 0\nscenery\ntime\n"));
}

TEST_F(FaultsTest, AFunctionFailsFromACallOn) {
    const std::string said =
        "headless-sim: XPLMFindDataRef fails from its next call on, as --fail asks\n";
    EXPECT_THAT(ask("--fail XPLMFindDataRef"),
                StartsWith(said + "dataref 0\ndataref 0\ndataref 0\nplugin 1\n"));
    EXPECT_THAT(ask("--fail XPLMFindDataRef:3"),
                StartsWith("dataref 1\n" + said + "dataref 1\ndataref 0\nplugin 1\n"));
    EXPECT_THAT(ask("--fail XPLMFindDataRef:4"), Not(HasSubstr("dataref 0\n")));
}

TEST_F(FaultsTest, SeveralFunctionsFailEachWithItsOwnAnswer) {
    const std::string told =
        ask("--fail XPLMFindPluginBySignature --fail XPLMAppendMenuItem --fail XPLMProbeTerrainXYZ "
            "--fail XPLMGetElapsedTime");
    EXPECT_THAT(told, HasSubstr("dataref 1\nplugin -1\nmenu item -1\nprobe 1\n"));
    EXPECT_THAT(told, HasSubstr("\nno time\n"));
}

TEST_F(FaultsTest, AFunctionThatRegistersNothingIsNeverCalled) {
    EXPECT_THAT(ask("--fail XPLMRegisterFlightLoopCallback"), Not(HasSubstr("time\n")));
}

TEST_F(FaultsTest, AFailureHoldsAcrossAReload) {
    EXPECT_EQ(run("--fail XPLMFindDataRef:3 " ASKING_PLUGIN " --console --paused", "reload\n"), 0);
    EXPECT_THAT(log(), HasSubstr("plugin 2\n")) << "it was reloaded";
    EXPECT_EQ(log().find("dataref 1", log().find("dataref 0")), std::string::npos);
}

TEST_F(FaultsTest, ABadOrderIsOneLineAndStatus2) {
    expectUsageError("--fail XPLMNone",
                     "--fail XPLMNone: \"XPLMNone\" is not a function of the SDK");
    for (const std::string number : {"0", "-1", "x", "", "1x"}) {
        expectUsageError("--fail XPLMFindDataRef:" + number,
                         "--fail XPLMFindDataRef:" + number + ": \"" + number +
                             "\" is not the number of a call; the first is 1");
    }
    for (const std::string freeze : {"3", "3s", "3s@", "@3s", "xs@1s", "1@1", "-1s@1s"}) {
        expectUsageError(
            "--freeze=" + freeze,
            "--freeze " + freeze + ": not a length and a time in the flight, as in 3s@10s");
    }
}

TEST_F(FaultsTest, AFreezeIsALateFrameAfterALoadOfScenery) {
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(run("--freeze 0.5s@0.1s --duration 0.3 --hz 100 " ASKING_PLUGIN), 0);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(700));
    EXPECT_THAT(log(), HasSubstr("scenery\ntime\nheadless-sim: no frames for a while, as --freeze "
                                 "asks\nscenery\nlate\n"));
}

TEST_F(FaultsTest, InSimulatedTimeAFreezeIsOnlyAPause) {
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(run("--freeze 0.5s@0.1s --paused --console --hz 100 " ASKING_PLUGIN, "step 30\n"), 0);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(500));
    EXPECT_THAT(
        log(),
        HasSubstr(
            "scenery\ntime\nheadless-sim: no frames for a while, as --freeze asks\nscenery\n"));
    EXPECT_THAT(log(), Not(HasSubstr("late\n")));
}

TEST_F(FaultsTest, ASignalEndsAFreeze) {
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(run("--freeze 100s@0.01s " ASKING_PLUGIN
                  " & pid=$!; until grep -qs freeze Log.txt; do :; done; kill $pid; wait $pid"),
              0);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(60));
}
