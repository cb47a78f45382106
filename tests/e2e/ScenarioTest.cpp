#include <filesystem>
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
    int count = 0;
    for (const auto& file : std::filesystem::directory_iterator(EXAMPLE_SCENARIOS)) {
        EXPECT_NO_THROW(play("--paused --script " + file.path().string())) << file.path();
        ++count;
    }
    EXPECT_GE(count, 2);
}

TEST_F(ScenarioTest, AnExamplePassesInRealTime) {
    EXPECT_THAT(play("--hz 200 --script " EXAMPLE_SCENARIOS "/lifecycle.scenario"),
                HasSubstr("frames "));
}

TEST_F(ScenarioTest, ThePageShowsTheExample) {
    EXPECT_THAT(contentOf(HEADLESS_PAGE),
                HasSubstr("```text\n" + contentOf(EXAMPLE_SCENARIOS "/gear.scenario") + "```\n"));
}

} // namespace
