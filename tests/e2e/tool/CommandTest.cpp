#include <csignal>
#include <regex>

#include "e2e/tool/ToolTest.h"
#include "support/Deadline.h"

namespace {

class CommandTest : public ToolTest {
protected:
    std::string events(const std::string& command) { return simulator->Ask("events " + command); }

    bool hasEvents(const std::string& command, const std::string& counts) {
        return events(command).find(counts) != std::string::npos;
    }

    void waitForEvents(const std::string& command, const std::string& counts) {
        EXPECT_TRUE(driveUntil([] {}, [&] { return hasEvents(command, counts); }))
            << events(command);
    }

    // Waits until a client observes both commands of the test.
    void waitUntilObserved() {
        EXPECT_TRUE(driveUntil([] {}, [&] { return simulator->AskNumber("handlers") >= 2; }));
    }

    static void expectMatch(const std::string& text, const std::string& pattern) {
        EXPECT_TRUE(std::regex_match(text, std::regex(pattern))) << text;
    }
};

TEST_F(CommandTest, RunsCommandsOnce) {
    const ToolResult result = runTool({"command", "once", "test/once", "test/hold"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(hasEvents("test/once", " begin=1 continue=0 end=1")) << events("test/once");
    EXPECT_TRUE(hasEvents("test/hold", " begin=1 continue=0 end=1")) << events("test/hold");
}

TEST_F(CommandTest, BeginsACommandAndSaysThatItStaysDown) {
    const ToolResult begun = runTool({"command", "begin", "test/hold"});
    EXPECT_EQ(begun.exitCode, 0);
    EXPECT_EQ(begun.out, "");
    EXPECT_EQ(begun.err, "orvane: test/hold stays down until \"orvane command end test/hold\"\n");
    EXPECT_TRUE(hasEvents("test/hold", " begin=1 ")) << events("test/hold");
    EXPECT_TRUE(hasEvents("test/hold", " end=0")) << events("test/hold");
    const ToolResult ended = runTool({"command", "end", "test/hold"});
    EXPECT_EQ(ended.exitCode, 0);
    EXPECT_EQ(ended.err, "");
    EXPECT_TRUE(hasEvents("test/hold", " end=1")) << events("test/hold");
}

TEST_F(CommandTest, HoldsCommandsForATime) {
    const ToolResult result = runTool({"command", "hold", "-T", "0.5", "test/hold", "test/once"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(hasEvents("test/hold", " begin=1 ")) << events("test/hold");
    EXPECT_TRUE(hasEvents("test/hold", " end=1")) << events("test/hold");
    EXPECT_TRUE(hasEvents("test/once", " end=1")) << events("test/once");
    // Held for at least a few frames.
    std::smatch continued;
    const std::string counts = events("test/hold");
    ASSERT_TRUE(std::regex_search(counts, continued, std::regex(" continue=(\\d+)"))) << counts;
    EXPECT_GE(std::stoi(continued[1]), 5);
}

TEST_F(CommandTest, ShowsOnATerminalWhatItHolds) {
    ToolRun run({"command", "hold", "-T", "100", "test/hold", "test/once"},
                {.hasErrTerminal = true, .environment = {"TERM=xterm"}});
    run.WaitForErr("holding test/hold, test/once for 100 s; Ctrl-C releases");
    waitForEvents("test/once", " begin=1 ");
    simulator->Ask("reload");
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_NE(result.err.find("releases\r\x1b[Korvane: released on a new connection\r\norvane: "),
              std::string::npos)
        << result.err;
}

TEST_F(CommandTest, ReleasesAHeldCommandAtAnInterrupt) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        fly();
        ToolRun run({"command", "hold", "test/hold"});
        waitForEvents("test/hold", " begin=1 ");
        EXPECT_TRUE(hasEvents("test/hold", " end=0")) << events("test/hold");
        run.Signal(signal);
        const ToolResult result = run.Wait();
        EXPECT_EQ(result.exitCode, 0) << result.err;
        EXPECT_TRUE(hasEvents("test/hold", " end=1")) << events("test/hold");
    }
}

TEST_F(CommandTest, ReleasesAHeldCommandOnANewConnectionWhenTheFirstIsLost) {
    ToolRun run({"command", "hold", "test/hold"});
    waitForEvents("test/hold", " begin=1 ");
    // The plugin drops all clients; the simulator goes on holding the command.
    simulator->Ask("reload");
    EXPECT_TRUE(hasEvents("test/hold", " end=0")) << events("test/hold");
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(
        result.err.starts_with("orvane: released on a new connection\n"
                               "orvane: 127.0.0.1:48000: "))
        << result.err;
    EXPECT_TRUE(hasEvents("test/hold", " end=1")) << events("test/hold");
}

TEST_F(CommandTest, SaysThatItCouldNotReleaseWhenTheSimulatorIsGone) {
    ToolRun run({"command", "hold", "--timeout", "0.5", "test/hold"});
    waitForEvents("test/hold", " begin=1 ");
    simulator.reset();
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(
        result.err.starts_with("orvane: test/hold could not be released and may still be down: "))
        << result.err;
}

TEST_F(CommandTest, RunsNothingIfANameIsUnknown) {
    for (const char* const how : {"once", "begin", "end", "hold", "observe"}) {
        const ToolResult result = runTool({"command", how, "test/once", "no/such", "nor/this"});
        EXPECT_EQ(result.exitCode, 3);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err,
                  "orvane: no/such: the simulator has no such command\n"
                  "orvane: nor/this: the simulator has no such command\n"
                  "orvane: nothing was done\n");
    }
    EXPECT_TRUE(hasEvents("test/once", " begin=0 ")) << events("test/once");
}

TEST_F(CommandTest, RecordsWhatItHasDone) {
    EXPECT_EQ(runTool({"command", "once", "--json", "test/once"}).out,
              "{\"command\":\"test/once\",\"action\":\"once\"}\n");
    EXPECT_EQ(runTool({"--csv", "command", "hold", "-T", "0", "test/hold"}).out,
              "command,action\ntest/hold,hold\n");
}

TEST_F(CommandTest, ObservesPresses) {
    ToolRun run({"command", "observe", "-n", "2", "-i", "0.01", "test/once", "test/hold"});
    waitUntilObserved();
    simulator->Ask("command once test/once");
    run.WaitForOut(" test/once pressed\n");
    simulator->Ask("command begin test/hold");
    run.WaitForOut(" test/hold down\n");
    simulator->Ask("command end test/hold");
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    expectMatch(result.out,
                "\\d+\\.\\d{3} test/once pressed\n"
                "\\d+\\.\\d{3} test/hold down\n"
                "\\d+\\.\\d{3} test/hold up\n");
}

TEST_F(CommandTest, ObservesPressesAsJson) {
    ToolRun run({"command", "observe", "--json", "-n", "1", "test/once", "test/hold"});
    waitUntilObserved();
    simulator->Ask("command once test/once");
    expectMatch(run.Wait().out,
                "\\{\"time\":\\d+\\.\\d+,\"command\":\"test/once\",\"event\":\"pressed\"\\}\n");
}

TEST_F(CommandTest, ObservesPressesAsCsv) {
    ToolRun run({"command", "observe", "--csv", "-n", "1", "test/once", "test/hold"});
    waitUntilObserved();
    simulator->Ask("command once test/once");
    expectMatch(run.Wait().out, "time,command,event\n\\d+\\.\\d+,test/once,pressed\n");
}

TEST_F(CommandTest, GoesOnObservingARestartedSimulator) {
    ToolRun run({"command", "observe", "-n", "2", "test/once", "test/hold"});
    waitUntilObserved();
    simulator->Ask("command once test/once");
    run.WaitForOut(" test/once pressed\n");
    simulator.reset();
    run.WaitForErr("orvane: 127.0.0.1:48000: ");
    fly();
    run.WaitForErr("orvane: the simulator is back\n");
    simulator->Ask("command once test/hold");
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    expectMatch(result.out,
                "\\d+\\.\\d{3} test/once pressed\n"
                "\\d+\\.\\d{3} test/hold pressed\n");
}

TEST_F(CommandTest, RefusesInvalidArguments) {
    EXPECT_EQ(runTool({"command"}).exitCode, 1);
    EXPECT_EQ(runTool({"command", "press", "test/once"}).exitCode, 1);
    EXPECT_EQ(runTool({"command", "hold", "-T", "-1", "test/once"}).exitCode, 1);
    EXPECT_EQ(runTool({"command", "once", "test/once", "test/once"}).err,
              "orvane: test/once: named twice\n");
    EXPECT_TRUE(hasEvents("test/once", " begin=0 ")) << events("test/once");
}

} // namespace
