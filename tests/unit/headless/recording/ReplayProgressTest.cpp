#include <string>

#include <gtest/gtest.h>

#include "prompt/TerminalTest.h"

using ReplayProgressTest = TerminalTest;

TEST_F(ReplayProgressTest, ATerminalShowsHowFarTheReplayHasCome) {
    const std::string file =
        folder.Write("in.csv", "time,sim/cockpit2/controls/flap_ratio\n0,0\n0.2,0.5\n0.4,1\n");
    start({"--replay", file});
    waitFor("\r\x1b[Kheadless-sim: replay 0.0 of 0.4 s");
    waitFor("\r\x1b[Kheadless-sim: replay 0.1 of 0.4 s");
    waitFor("\r\x1b[Kframes ");
    process->WaitForEnd();
    EXPECT_EQ(process->ExitCode(), 0);
}
