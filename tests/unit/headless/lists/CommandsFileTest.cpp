#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "headless/lists/CommandsFile.h"
#include "headless/lists/TextLines.h"
#include "support/TemporaryDirectory.h"
#include "support/TextOf.h"

using headless::CommandDefinition;
using headless::parseCommands;
using headless::readCommandsFile;
using headless::TextFileError;

namespace {

std::vector<CommandDefinition> parse(const std::string& text) {
    std::istringstream stream(text);
    return parseCommands(stream, "Commands.txt");
}

std::string errorOf(const std::string& text) {
    return textOf<TextFileError>([&] { parse(text); });
}

} // namespace

TEST(CommandsFileTest, ReadsNameAndDescription) {
    const auto commands = parse(
        "sim/none/none              Do nothing.\n"
        "\n"
        "sim/operation/quit\tQuit the simulator.  \r\n"
        "sim/bare\n");
    ASSERT_EQ(commands.size(), 3U);
    EXPECT_EQ(commands[0].name, "sim/none/none");
    EXPECT_EQ(commands[0].description, "Do nothing.");
    EXPECT_EQ(commands[1].name, "sim/operation/quit");
    EXPECT_EQ(commands[1].description, "Quit the simulator.");
    EXPECT_EQ(commands[2].description, "");
}

TEST(CommandsFileTest, AWordThatIsNotACommandNameIsMalformed) {
    EXPECT_EQ(errorOf("sim/a A\nhello world\n"), "Commands.txt:2: \"hello\" is not a command name");
}

TEST(CommandsFileTest, ALineThatBeginsWithABlankIsMalformed) {
    EXPECT_EQ(errorOf("  sim/a A\n"), "Commands.txt:1: the line begins with a blank");
}

TEST(CommandsFileTest, AMissingFileIsReportedInOneLine) {
    const TemporaryDirectory folder;
    EXPECT_EQ(textOf<TextFileError>([&] { readCommandsFile(folder.Path("none.txt")); }),
              folder.Path("none.txt") + ": cannot be opened: No such file or directory");
}
