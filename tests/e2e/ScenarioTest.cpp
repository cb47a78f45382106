#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

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

// The commands of a section of the page, without their remarks.
std::vector<std::string> commandsOf(const std::string& section) {
    std::vector<std::string> commands;
    bool isSection = false;
    bool isShell = false;
    for (const std::string& line : linesOf(contentOf(HEADLESS_PAGE))) {
        if (line.starts_with("## ")) {
            isSection = line == "## " + section;
        } else if (line.starts_with("```")) {
            isShell = line == "```sh";
        } else if (isSection && isShell) {
            commands.push_back(line);
        }
    }
    return commands;
}

class ScenarioPageTest : public ScenarioTest {
protected:
    ScenarioPageTest() {
        std::filesystem::copy(EXAMPLE_SCENARIOS, ".");
        std::filesystem::create_symlink(PLUGIN, "my.xpl");
        const std::filesystem::path folder = std::filesystem::path(HEADLESS_SIM).parent_path();
        ::setenv("PATH", (folder.string() + ":" + std::getenv("PATH")).c_str(), 1);
    }

    static void run(const std::string& section) {
        const std::vector<std::string> commands = commandsOf(section);
        EXPECT_EQ(commands.size(), 4U);
        for (const std::string& command : commands) {
            EXPECT_THAT(outputOf(command), HasSubstr("plugin time per frame")) << command;
        }
    }
};

TEST_F(ScenarioPageTest, ScenariosAreCarriedOutAsShown) {
    run("Scenarios");
    EXPECT_THAT(contentOf("report.xml"), HasSubstr("failures=\"0\" errors=\"0\""));
}

TEST_F(ScenarioPageTest, FlightsAreReplayedAndRecordedAsShown) {
    run("Replay and record");
    const std::vector<std::string> recorded = linesOf(contentOf("out.csv"));
    EXPECT_THAT(contentOf(HEADLESS_PAGE),
                HasSubstr("```text\n" + recorded.at(0) + "\n" + recorded.at(1) + "\n```\n"));
}

TEST_F(ScenarioTest, ThePageShowsTheExamples) {
    for (const char* const name : {"gear.scenario", "approach.fdr"}) {
        EXPECT_THAT(contentOf(HEADLESS_PAGE),
                    HasSubstr("```text\n" + contentOf(EXAMPLE_SCENARIOS "/" + std::string(name)) +
                              "```\n"));
    }
}

} // namespace
