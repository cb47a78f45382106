#include <gtest/gtest.h>

#include "e2e/ToolRun.h"

namespace {

TEST(UsageTest, WantsASubcommand) {
    const ToolResult result = runTool({});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "orvane: A subcommand is required (see --help)\n");
}

TEST(UsageTest, RefusesAnOptionThatItDoesNotKnow) {
    const ToolResult result = runTool({"--prot", "48000"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find("orvane: "), std::string::npos) << result.err;
}

TEST(UsageTest, HelpsOnStandardOutputAndEndsWithExamples) {
    const ToolResult result = runTool({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("Examples:\n  orvane info\n"), std::string::npos) << result.out;
}

} // namespace
