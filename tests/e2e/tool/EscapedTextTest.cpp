// Text from a file, the wire or the command line cannot control the terminal.

#include "e2e/tool/ToolTest.h"

namespace {

// Resets a terminal.
const std::string kReset =
    "\x1B"
    "c";
const std::string kShown = "\\x1Bc";

ToolSetting onTerminal() {
    ToolSetting setting;
    setting.hasTerminal = true;
    return setting;
}

class EscapedTextTest : public ToolTest {};

TEST_F(EscapedTextTest, InNamesAndUnits) {
    EXPECT_EQ(runTool({"get", "no" + kReset}).err,
              "orvane: no" + kShown + ": the simulator has no such dataref\n");
    EXPECT_EQ(runTool({"get", "test/int:int@" + kReset, "test/float:float"}).out,
              "test/int:int@" + kShown + "=0\ntest/float:float=0\n");
    EXPECT_EQ(runTool({"set", "test/int:int=\n1"}).err,
              "orvane: test/int:int: \"\\x0A1\" is not a whole number from -2147483648 to "
              "2147483647\n");
    EXPECT_EQ(runTool({"command", "once", "no\xFF"}).err,
              "orvane: no\\xFF: the simulator has no such command\norvane: nothing was done\n");
}

TEST_F(EscapedTextTest, InHostsAndUnknownWords) {
    const ToolResult result = runTool({"info", "--host", kReset});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.starts_with("orvane: " + kShown)) << result.err;
    EXPECT_NE(runTool({"info", kReset}).err.find(kShown), std::string::npos);
}

TEST_F(EscapedTextTest, InFiles) {
    directory.Write("r.csv", "time,a" + kReset + ":short\n");
    const std::string replay = runTool({"replay", "r.csv"}).err;
    EXPECT_EQ(replay.find('\x1B'), std::string::npos) << replay;
    directory.Write("p.toml", "[[input]]\nname = \"a\"\ndataref = \"x\"\ntype = \"\\u001bc\"\n");
    EXPECT_EQ(runTool({"drive", "--check", "p.toml"}).err,
              "p.toml:4:8: \"type\" is \"" + kShown + "\"; it can be float or int\n");
    directory.Write("a.cfg", "kyr/" + kReset + "\\ float\n");
    EXPECT_TRUE(runTool({"config", "check", "a.cfg"})
                    .out.starts_with("a.cfg:1: registers float kyr/" + kShown + "\\\\\n"));
}

TEST_F(EscapedTextTest, InFilesNames) {
    EXPECT_EQ(runTool({"replay", kReset}).err,
              "orvane: " + kShown + ": No such file or directory\n");
    EXPECT_TRUE(runTool({"drive", kReset}).err.starts_with("orvane: " + kShown));
    EXPECT_TRUE(runTool({"config", "check", kReset}).err.starts_with("orvane: " + kShown));
}

TEST_F(EscapedTextTest, InRecordsOnlyOnATerminal) {
    EXPECT_EQ(runTool({"get", "--csv", "test/int:int@" + kReset}).out,
              "name,type,value,unit\ntest/int,int,0," + kReset + "\n");
    EXPECT_EQ(runTool({"get", "--csv", "test/int:int@" + kReset}, onTerminal()).out,
              "name,type,value,unit\r\ntest/int,int,0," + kShown + "\r\n");
    EXPECT_EQ(runTool({"get", "--json", "test/int:int@" + kReset}).out,
              "{\"name\":\"test/int\",\"type\":\"int\",\"value\":0,\"unit\":\"\\u001bc\"}\n");
}

} // namespace
