#include <gtest/gtest.h>

#include "e2e/ToolRun.h"
#include "support/TemporaryDirectory.h"

namespace {

using Arguments = std::vector<std::string>;

std::string refusal(const Arguments& arguments) {
    const ToolResult result = runTool(arguments);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    return result.err;
}

TEST(UsageTest, NeedsACommand) {
    EXPECT_EQ(refusal({}), "orvane: the command is missing (see \"orvane --help\")\n");
    EXPECT_EQ(refusal({"config"}),
              "orvane: the command is missing (see \"orvane config --help\")\n");
    EXPECT_EQ(refusal({"get"}), "orvane: NAME is required (see \"orvane get --help\")\n");
}

TEST(UsageTest, NamesTheCommandThatItDoesNotKnowAndTheNearestOne) {
    EXPECT_EQ(refusal({"gte"}),
              "orvane: \"gte\" is not a command of orvane; did you mean get? (see \"orvane "
              "--help\")\n");
    EXPECT_EQ(refusal({"config", "chek"}),
              "orvane: \"chek\" is not a command of orvane config; did you mean check? (see "
              "\"orvane config --help\")\n");
    EXPECT_EQ(refusal({"fly"}),
              "orvane: \"fly\" is not a command of orvane (see \"orvane --help\")\n");
    EXPECT_EQ(refusal({"help", "wach"}),
              "orvane: \"wach\" is not a command of orvane; did you mean watch?\n");
    EXPECT_EQ(refusal({"info", "now"}),
              "orvane: unexpected argument \"now\" (see \"orvane info --help\")\n");
}

TEST(UsageTest, NamesTheOptionThatItDoesNotKnowAndTheNearestOne) {
    EXPECT_EQ(refusal({"-V"}),
              "orvane: unknown option -V; did you mean --version? (see \"orvane --help\")\n");
    EXPECT_EQ(refusal({"--prot=48000", "info"}),
              "orvane: unknown option --prot; did you mean --port? (see \"orvane info --help\")\n");
    EXPECT_EQ(refusal({"watch", "--intreval", "1", "x"}),
              "orvane: unknown option --intreval; did you mean --interval? (see \"orvane watch "
              "--help\")\n");
    EXPECT_EQ(refusal({"get", "--frobnicate", "x"}),
              "orvane: unknown option --frobnicate (see \"orvane get --help\")\n");
}

TEST(UsageTest, SaysWhatIsWrongWithTheValueOfAnOption) {
    EXPECT_EQ(refusal({"info", "--timeout", "5s"}),
              "orvane: --timeout: \"5s\" is not a number (see \"orvane info --help\")\n");
    EXPECT_EQ(
        refusal({"record", "x", "-o", "f", "-T", "1e9"}),
        "orvane: --seconds: 1e9 is not between 0 and a year (see \"orvane record --help\")\n");
    EXPECT_EQ(refusal({"info", "--port", "99999"}),
              "orvane: --port: 99999 is not between 1 and 65535 (see \"orvane info --help\")\n");
    EXPECT_EQ(refusal({"watch", "x", "-n"}),
              "orvane: --count needs exactly one value (see \"orvane watch --help\")\n");
}

TEST(UsageTest, HelpsOnStandardOutputAndEndsWithExamples) {
    const ToolResult result = runTool({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("Examples:\n  orvane info\n"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("\n  1  wrong usage, or a file that cannot be read or written\n"),
              std::string::npos)
        << result.out;
    EXPECT_EQ(runTool({"help"}).out, result.out);
}

TEST(UsageTest, PrintsItsVersion) {
    const ToolResult result = runTool({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "orvane " PROJECT_VERSION "\n");
}

} // namespace
