#include <gtest/gtest.h>

#include "tools/orvane/help/Completions.h"
#include "unit/tools/orvane/help/SmallTool.h"

namespace {

std::string completions(const std::vector<std::string>& words) {
    return orvane::tool::completionsOf(SmallTool().App(), words);
}

TEST(CompletionsTest, OfferCommands) {
    EXPECT_EQ(completions({""}), "play\tPlay a \"file\"\ngroup\tDo more\nhelp\tHelp\n");
    EXPECT_EQ(completions({"gr"}), "group\tDo more\n");
    EXPECT_EQ(completions({"group", ""}), "hold\tHold names\n");
    EXPECT_EQ(completions({"x"}), "");
    EXPECT_EQ(completions({}), completions({""}));
}

TEST(CompletionsTest, OfferTheOptionsOfACommandAndOfEveryCommand) {
    EXPECT_EQ(completions({"group", "hold", "-"}),
              "-h\tPrint this help message and exit\n"
              "--help\tPrint this help message and exit\n"
              "--hard\tHold hard\n"
              "--json\tPrint JSON\n"
              "--host\tThe host\n");
    EXPECT_EQ(completions({"group", "hold", "--h"}),
              "--help\tPrint this help message and exit\n--hard\tHold hard\n--host\tThe host\n");
}

TEST(CompletionsTest, OfferTheValuesOfAnOption) {
    EXPECT_EQ(completions({"play", "--input", ""}), ":files\nsine\nsquare\n");
    EXPECT_EQ(completions({"play", "-i", "si"}), ":files\nsine\n");
    EXPECT_EQ(completions({"--host", ""}), "");
}

TEST(CompletionsTest, OfferFilesForAFileArgument) {
    EXPECT_EQ(completions({"play", ""}), ":files\n-\n");
    EXPECT_EQ(completions({"group", "hold", "na"}), "");
}

TEST(CompletionsTest, DistinguishAValueFromACommand) {
    EXPECT_EQ(completions({"--host", "play", "group", ""}), "hold\tHold names\n");
    EXPECT_EQ(completions({"--json", "group", ""}), "hold\tHold names\n");
    // As bash cuts "--host=play".
    EXPECT_EQ(completions({"--host", "=", "play", "group", ""}), "hold\tHold names\n");
    EXPECT_EQ(completions({"play", "--input", "=", "sq"}), ":files\nsquare\n");
    EXPECT_EQ(completions({"play", "--input", "="}), ":files\nsine\nsquare\n");
}

TEST(CompletionsTest, OfferCommandsAfterHelp) {
    EXPECT_EQ(completions({"help", "g"}), "group\tDo more\n");
    EXPECT_EQ(completions({"help", "group", ""}), "hold\tHold names\n");
}

} // namespace
