#include <csignal>
#include <regex>
#include <string>

#include "e2e/tool/DriveTest.h"

namespace {

class DriveTableTest : public DriveTest {
protected:
    static ToolSetting terminal() {
        return {.hasTerminal = true, .environment = {"TERM=xterm", "NO_COLOR=1", "LANG=C"}};
    }

    static bool hasRow(const std::string& text, const std::string& pattern) {
        return std::regex_search(text, std::regex("\n" + pattern + "\\x1b\\[K\r"));
    }
};

TEST_F(DriveTableTest, ShowsInputsAndOutputsOnATerminalAndRestoresIt) {
    directory.Write("t.csv", "time,axis,switch,brakes\n0,65535,7,1\n1000,0,0,0\n");
    ToolRun run({"drive", "p.toml", "--input", "t.csv", "-T", "900"}, terminal());
    run.WaitForOut("button");
    EXPECT_FALSE(run.HasEcho());
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(run.HasEcho());
    EXPECT_TRUE(result.out.ends_with("\x1b[?25h")) << result.out;
    EXPECT_TRUE(std::regex_search(
        result.out, std::regex("127\\.0\\.0\\.1:48000   [0-9.]+ of 900\\.0 s   1 exchanges   "
                               "[0-9.]+ ms   aircraft 0xB9852EB1\\x1b\\[K")))
        << result.out;
    EXPECT_TRUE(hasRow(result.out, "axis +65535 ##########  +-1\\.\\.1, float range"))
        << result.out;
    EXPECT_TRUE(hasRow(result.out, "switch +7  +unscaled, int")) << result.out;
    EXPECT_TRUE(hasRow(result.out, "brakes +1 held  +command, held")) << result.out;
    EXPECT_TRUE(hasRow(result.out, "position +0\\.000  -")) << result.out;
    EXPECT_TRUE(hasRow(result.out, "lamps\\[1\\] +4  -")) << result.out;
    EXPECT_TRUE(hasEvents(" end=1")) << simulator->Ask("events test/hold");
}

TEST_F(DriveTableTest, LeavesTheLastValuesOnTheTerminal) {
    const ToolResult result = runTool({"drive", "p.toml", "-n", "20"}, terminal());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_NE(result.out.rfind("   20 exchanges   "), std::string::npos) << result.out;
}

TEST_F(DriveTableTest, EndsBeforeAMessageAndContinuesBelowIt) {
    ToolSetting setting = terminal();
    setting.hasErrTerminal = true;
    ToolRun run({"drive", "p.toml", "--reconnect"}, setting);
    run.WaitForOut("button");
    simulator->Quit();
    run.WaitForErr("orvane: 127.0.0.1:48000: ");
    const std::size_t before = run.Out().size();
    fly();
    run.WaitForErr("orvane: connected again\r\n");
    run.WaitForOut("NAME", before);
    // Not over the messages.
    EXPECT_TRUE(run.Out().substr(before).starts_with("\r127.0.0.1:48000   ")) << run.Out();
    run.Signal(SIGINT);
    const ToolResult result = run.Wait();
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err.find('\x1b'), std::string::npos) << result.err;
}

TEST_F(DriveTableTest, PrintsLinesInsteadWithPlain) {
    const ToolResult result = runTool({"drive", "p.toml", "-n", "2", "--plain"}, terminal());
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(withoutTimes(result.out),
              "T position=0 lamps=3,4 button=false aircraft_id=0xB9852EB1\r\n"
              "T position=0 lamps=3,4 button=false aircraft_id=0xB9852EB1\r\n");
}

TEST_F(DriveTableTest, PrintsLinesInsteadWithoutCursorControl) {
    ToolSetting setting = terminal();
    setting.environment = {"TERM=dumb"};
    const ToolResult result = runTool({"drive", "p.toml", "-n", "1"}, setting);
    EXPECT_EQ(withoutTimes(result.out),
              "T position=0 lamps=3,4 button=false aircraft_id=0xB9852EB1\r\n");
}

} // namespace
