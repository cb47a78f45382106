// What headless-sim says about plugins that break the SDK's rules.

#include <cstdlib>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HeadlessSimRun.h"
#include "support/Text.h"

using ::testing::HasSubstr;
using ::testing::Not;

class ContractTest : public HeadlessSimRun {
protected:
    // The careless plugin breaks the rule in three frames.
    int fly(const std::string& rule, const std::string& more = "") {
        ::setenv("HEADLESS_TEST_BREACH", rule.c_str(), 1);
        return run(CARELESS_PLUGIN " --console --paused " + more, "step 3\n");
    }

    // It is a warning in the log, once; with --strict also on standard error, with status 4.
    void expectBreach(const std::string& rule, const std::string& text) {
        const std::string line = "headless-sim: warning: " CARELESS_PLUGIN ": " + text + "\n";
        EXPECT_EQ(fly(rule), 0) << rule;
        EXPECT_EQ(errors, "") << rule;
        EXPECT_EQ(log(), line);
        EXPECT_EQ(fly(rule, "--strict"), 4) << rule;
        EXPECT_EQ(errors, line);
    }

    // It is a note in the log, once, and no breach.
    void expectNote(const std::string& rule, const std::string& text) {
        EXPECT_EQ(fly(rule, "--strict"), 0) << rule;
        EXPECT_EQ(log(), "headless-sim: note: " CARELESS_PLUGIN ": " + text + "\n");
        EXPECT_EQ(errors, "");
    }
};

TEST_F(ContractTest, ACarefulPluginCausesNoLines) {
    EXPECT_EQ(fly("", "--strict"), 0);
    EXPECT_EQ(log(), "");
    EXPECT_EQ(errors, "");
}

TEST_F(ContractTest, ThePageShowsWhatTheLogSays) {
    std::string lines;
    for (const char* const rule : {"null", "menu"}) {
        fly(rule);
        std::string line = log();
        const std::string plugin = CARELESS_PLUGIN;
        lines += line.replace(line.find(plugin), plugin.size(), "/plugins/my/64/lin.xpl");
    }
    EXPECT_THAT(contentOf(HEADLESS_PAGE), HasSubstr("```text\n" + lines + "```\n"));
}

TEST_F(ContractTest, CallsBeforeTheStartAndAfterTheStop) {
    expectBreach("constructor", "XPLMGetCycleNumber: constructors: at the wrong moment");
    expectBreach("destructor", "XPLMGetCycleNumber: destructors: at the wrong moment");
    EXPECT_EQ(run(CARELESS_PLUGIN " --console --paused --strict", "stop\n"), 4);
    EXPECT_THAT(errors, HasSubstr("destructors: at the wrong moment\n"));
}

TEST_F(ContractTest, CallsThatTheCallbackMayNotMake) {
    expectBreach("drawing",
                 "XPLMDrawTranslucentDarkBox: nothing is drawn now: at the wrong moment");
    expectBreach("own loop",
                 "XPLMSetFlightLoopCallbackInterval: in the callback itself: at the wrong moment");
}

TEST_F(ContractTest, CallsFromAnotherThread) {
    expectBreach("thread",
                 "XPLMGetCycleNumber was called from another thread; the SDK belongs to the "
                 "simulator's thread");
}

TEST_F(ContractTest, ANullWhereTheSdkForbidsIt) {
    expectBreach("null", "XPLMCommandOnce: command: null");
    expectNote("null dataref", "XPLMGetDatai: dataref: null");
}

TEST_F(ContractTest, AHandleThatWasGivenBack) {
    expectBreach("handle", "XPLMScheduleFlightLoop: flight loop: not a handle");
}

TEST_F(ContractTest, AHandleWhoseOwnerWent) {
    ::setenv("HEADLESS_TEST_BREACH", "orphan", 1);
    EXPECT_EQ(run(CARELESS_PLUGIN " " FAKE_PLUGIN " --console --paused --strict",
                  "step 1\nstop fake_plugin\nstep 3\n"),
              4);
    EXPECT_EQ(errors, "headless-sim: warning: " CARELESS_PLUGIN
                      ": XPLMGetDatai: fake/counter: its owner is gone\n");
}

TEST_F(ContractTest, WhatIsLeftAtTheStop) {
    expectBreach("left",
                 "left at its stop: commands begun (XPLMCommandEnd): 1, terrain probes "
                 "(XPLMDestroyProbe): 1");
    expectNote("menu",
               "left at its stop, taken back by the simulator: menus and items "
               "(XPLMDestroyMenu): 1");
}

TEST_F(ContractTest, ALibraryThatStaysInTheProcess) {
    const std::string line =
        "headless-sim: warning: " STICKY_PLUGIN ": stays in the process after it was unloaded\n";
    EXPECT_EQ(run(STICKY_PLUGIN " --duration 0 --strict"), 4);
    EXPECT_THAT(log(), HasSubstr(line));
    EXPECT_EQ(errors, line);
}
