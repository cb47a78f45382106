#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"
#include "support/Text.h"

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

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

// The commands of a section of the page, without their remarks. The first has no heading.
std::vector<std::string> commandsOf(const std::string& section) {
    std::vector<std::string> commands;
    bool isSection = section.empty();
    bool isShell = false;
    for (const std::string& line : linesOf(contentOf(HEADLESS_PAGE))) {
        if (line.starts_with("## ")) {
            isSection = line == "## " + section;
        } else if (line.starts_with("```")) {
            isShell = line == "```sh";
        } else if (isSection && isShell) {
            commands.push_back(line.substr(0, line.find(" # ")));
        }
    }
    return commands;
}

// With a flight that takes a moment.
std::string shortened(const std::string& command) {
    const std::string option = " --duration ";
    const std::size_t end = command.find("headless-sim") + std::string("headless-sim").size();
    const std::size_t begin = std::min(command.find(option), command.size());
    const std::size_t rest = std::min(command.find(' ', begin + option.size()), command.size());
    return command.substr(0, end) + option + "0.1" + command.substr(end, begin - end) +
           (begin == command.size() ? "" : command.substr(rest));
}

class HeadlessPageTest : public ScenarioTest {
protected:
    HeadlessPageTest() {
        std::filesystem::copy(EXAMPLE_SCENARIOS, ".");
        std::filesystem::create_symlink(PLUGIN, "my.xpl");
        const std::filesystem::path folder = std::filesystem::path(HEADLESS_SIM).parent_path();
        ::setenv("PATH", (folder.string() + ":" + std::getenv("PATH")).c_str(), 1);
        ::setenv("HOME", directory.Path().c_str(), 1);
    }

    static void provide(const char* plugin, const std::string& file) {
        std::filesystem::create_directories(std::filesystem::path(file).parent_path());
        std::filesystem::create_symlink(plugin, file);
    }

    static void run(const std::string& section) {
        const std::vector<std::string> commands = commandsOf(section);
        EXPECT_EQ(commands.size(), 4U);
        for (const std::string& command : commands) {
            EXPECT_THAT(outputOf(command), HasSubstr("plugin time per frame")) << command;
        }
    }
};

TEST_F(HeadlessPageTest, FliesInTheWaysShownFirst) {
    directory.Write("my.scenario", "frames 1\n");
    provide(FAKE_PLUGIN, "plugins/one/one.xpl");
    provide(NEIGHBOUR_PLUGIN, "plugins/two/64/lin.xpl");
    provide(PLUGIN, "X-Plane/Resources/plugins/orvane/64/lin.xpl");
    std::vector<std::string> commands = commandsOf("");
    ASSERT_EQ(commands.size(), 7U);
    EXPECT_THAT(outputOf(commands.front()), HasSubstr("my.xpl: uses "));
    commands.erase(commands.begin());
    for (const std::string& command : commands) {
        EXPECT_THAT(outputOf(shortened(command) + " < /dev/null"),
                    HasSubstr("plugin time per frame"))
            << command;
    }
    EXPECT_TRUE(directory.Has("X-Plane/Log.txt"));
}

TEST_F(HeadlessPageTest, ScenariosAreCarriedOutAsShown) {
    run("Scenarios");
    EXPECT_THAT(contentOf("report.xml"), HasSubstr("failures=\"0\" errors=\"0\""));
}

TEST_F(HeadlessPageTest, FlightsAreReplayedAndRecordedAsShown) {
    run("Replay and record");
    const std::vector<std::string> recorded = linesOf(contentOf("out.csv"));
    EXPECT_THAT(contentOf(HEADLESS_PAGE),
                HasSubstr("```text\n" + recorded.at(0) + "\n" + recorded.at(1) + "\n```\n"));
}

TEST_F(HeadlessPageTest, PluginsAreMeasuredAsShown) {
    const std::vector<std::string> commands = commandsOf("Measure a plugin");
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_THAT(outputOf(shortened(commands[0])),
                MatchesRegex("\\{\n  \"file\": \".*\",\n  \"cpu\": [0-9.]+\n\\}\n"));
    EXPECT_THAT(outputOf(shortened(commands[1])), HasSubstr("plugin time per frame"));
}

TEST_F(ScenarioTest, ThePageShowsTheExamples) {
    for (const char* const name : {"gear.scenario", "approach.fdr"}) {
        EXPECT_THAT(contentOf(HEADLESS_PAGE),
                    HasSubstr("```text\n" + contentOf(EXAMPLE_SCENARIOS "/" + std::string(name)) +
                              "```\n"));
    }
}

} // namespace
