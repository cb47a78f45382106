// A command fails if its output cannot be written.

#include "e2e/tool/ToolTest.h"

namespace {

using Arguments = std::vector<std::string>;

class FullDiskTest : public ToolTest {
protected:
    static void expectFailure(const Arguments& arguments) {
        ToolSetting setting;
        setting.hasFullDisk = true;
        setting.input = "kyr/lamps int_array 8\n";
        const ToolResult result = runTool(arguments, setting);
        const std::string command = testing::PrintToString(arguments);
        EXPECT_EQ(result.exitCode, 1) << command;
        EXPECT_TRUE(result.err.starts_with("orvane: standard output: No space left on device\n"))
            << command << "\n"
            << result.err;
    }
};

TEST_F(FullDiskTest, FailsEveryCommand) {
    directory.Write("p.toml", "[[output]]\nname = \"a\"\ndataref = \"test/int\"\ntype = \"int\"\n");
    for (const Arguments& arguments : std::vector<Arguments>{
             {"info"},
             {"get", "test/int:int"},
             {"set", "--json", "test/int:int=1"},
             {"watch", "-n", "1", "test/int:int"},
             {"command", "once", "--json", "test/hold"},
             {"command", "hold", "-T", "0", "--csv", "test/hold"},
             {"latency", "-T", "0.2"},
             {"drive", "-n", "2", "p.toml"},
             {"drive", "--check", "p.toml"},
             {"config", "check", "-"},
         }) {
        expectFailure(arguments);
    }
}

TEST_F(FullDiskTest, FailsHelpAndVersion) {
    for (const Arguments& arguments : std::vector<Arguments>{
             {"--help"}, {"get", "--help"}, {"help"}, {"help", "config", "check"}, {"--version"}}) {
        expectFailure(arguments);
    }
}

TEST_F(FullDiskTest, FailsAFileThatIsWritten) {
    directory.Write("p.toml", "[[output]]\nname = \"a\"\ndataref = \"test/int\"\ntype = \"int\"\n");
    const ToolResult record =
        runTool({"record", "test/int:int", "-n", "1", "--force", "-o", "/dev/full"});
    EXPECT_EQ(record.exitCode, 1);
    EXPECT_EQ(record.err, "orvane: /dev/full: No space left on device\n");
    EXPECT_EQ(runTool({"drive", "p.toml", "-n", "1", "--force", "-o", "/dev/full"}).exitCode, 1);
}

TEST_F(FullDiskTest, KeepsItsExitStatusWithoutAPlaceForMessages) {
    for (const std::string errors : {"2>/dev/full", "2>&-"}) {
        const std::vector<std::string> arguments{"-c", "exec \"$0\" get no/such " + errors,
                                                 ORVANE_TOOL};
        EXPECT_EQ(runTool(arguments, {.program = "/bin/sh"}).exitCode, 3) << errors;
    }
}

TEST_F(FullDiskTest, SendsTheSimulatorNoMessagesIfItsDescriptorsAreClosed) {
    const std::vector<std::string> arguments{
        "-c", "exec \"$0\" command begin test/once test/hold <&- >&- 2>&-", ORVANE_TOOL};
    EXPECT_EQ(runTool(arguments, {.program = "/bin/sh"}).exitCode, 0);
}

} // namespace
