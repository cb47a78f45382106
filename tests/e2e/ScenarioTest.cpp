#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"
#include "support/Text.h"

using ::testing::HasSubstr;

namespace {

// Scenarios with the real plugin in the real program, in a folder of their own.
class ScenarioTest : public testing::Test {
protected:
    ScenarioTest() { directory.MakePluginsFolder(); }

    // What it tells; throws when it does not pass.
    static std::string play(const std::string& arguments) {
        return outputOf(HEADLESS_SIM " " PLUGIN " " + arguments);
    }

    TemporaryDirectory directory;
};

TEST_F(ScenarioTest, TheExamplesPass) {
    for (const char* const name : {"gear", "lifecycle"}) {
        EXPECT_NO_THROW(
            play("--paused --script " EXAMPLE_SCENARIOS "/" + std::string(name) + ".scenario"))
            << name;
    }
}

TEST_F(ScenarioTest, AnExamplePassesInRealTime) {
    EXPECT_THAT(play("--hz 200 --script " EXAMPLE_SCENARIOS "/lifecycle.scenario"),
                HasSubstr("frames "));
}

TEST_F(ScenarioTest, TheExampleOfAReplayPasses) {
    EXPECT_NO_THROW(play("--paused --replay " EXAMPLE_SCENARIOS
                         "/approach.fdr --script " EXAMPLE_SCENARIOS "/approach.scenario"));
}

TEST_F(ScenarioTest, ThePageShowsTheExamples) {
    for (const char* const name : {"gear.scenario", "approach.fdr"}) {
        EXPECT_THAT(contentOf(HEADLESS_PAGE),
                    HasSubstr("```text\n" + contentOf(EXAMPLE_SCENARIOS "/" + std::string(name)) +
                              "```\n"));
    }
}

} // namespace
