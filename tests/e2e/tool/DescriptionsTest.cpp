// The descriptions of the tool: its help, its man page, its completions and docs/orvane.md.

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "e2e/ToolRun.h"
#include "support/TemporaryDirectory.h"
#include "support/Text.h"

namespace {

using Words = std::vector<std::string>;

// The text before the tab, or the whole text.
Words firstFields(const std::string& text) {
    Words fields;
    for (const std::string& line : linesOf(text)) {
        fields.push_back(line.substr(0, line.find('\t')));
    }
    return fields;
}

Words joined(Words words, const Words& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

std::string complete(const Words& words) {
    return runTool(joined({"__complete"}, words)).out;
}

// All commands, as the words that lead to them.
std::vector<Words> commandsBelow(const Words& command) {
    std::vector<Words> all;
    for (const std::string& name : firstFields(complete(joined(command, {""})))) {
        if (name == ":files" || name.starts_with('-') || name.ends_with('/')) {
            continue;
        }
        all.push_back(joined(command, {name}));
        if (name != "help") {
            const std::vector<Words> below = commandsBelow(all.back());
            all.insert(all.end(), below.begin(), below.end());
        }
    }
    return all;
}

std::string text(const Words& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + word;
    }
    return line;
}

// What bash offers for the last of these words.
std::set<std::string> offeredByBash(const Words& words) {
    std::string line;
    for (const std::string& word : words) {
        line += " \"" + word + "\"";
    }
    const std::string script = std::string("source ") + COMPLETION_FOLDER + "/bash; " +
                               "COMP_WORDS=(" + ORVANE_TOOL + line +
                               "); COMP_CWORD=" + std::to_string(words.size()) +
                               "; _orvane; printf \"%s\\n\" \"${COMPREPLY[@]}\"";
    const Words found = linesOf(outputOf("bash -c '" + script + "' 2>&1"));
    std::set<std::string> offered(found.begin(), found.end());
    offered.erase("");
    return offered;
}

using Offered = std::set<std::string>;

TEST(DescriptionsTest, EveryHelpEndsInExamples) {
    std::vector<Words> commands = commandsBelow({});
    EXPECT_GE(commands.size(), 17U);
    commands.emplace_back();
    for (const Words& command : commands) {
        const std::string help = runTool(joined(command, {"--help"})).out;
        const std::size_t examples = help.rfind("\nExamples:\n");
        ASSERT_NE(examples, std::string::npos) << text(command);
        EXPECT_EQ(help.find("\n\n", examples + 1), std::string::npos) << text(command);
        EXPECT_NE(help.find(text(joined({"orvane"}, command)), examples), std::string::npos)
            << text(command);
        EXPECT_EQ(runTool(joined({"help"}, command)).out, help) << text(command);
    }
}

TEST(DescriptionsTest, NoHelpLineIsWiderThan100Columns) {
    for (const Words& command : commandsBelow({})) {
        for (const std::string& line : linesOf(runTool(joined(command, {"--help"})).out)) {
            EXPECT_LE(line.size(), 100U) << line;
        }
    }
}

TEST(DescriptionsTest, TheManPageHasEveryCommandAndOption) {
    const std::string page = runTool({"__man"}).out;
    EXPECT_TRUE(page.starts_with(".TH ORVANE 1 \"\" \"XPlaneOrvane " PROJECT_VERSION "\""))
        << page.substr(0, 80);
    for (const Words& command : commandsBelow({})) {
        EXPECT_NE(page.find("\n.SS \"orvane " + text(command)), std::string::npos) << text(command);
    }
    for (const char* const part :
         {"\n\\fB\\-i\\fR, \\fB\\-\\-interval\\fR \\fISECONDS\\fR\n",
          "\n.SH EXIT STATUS\n.EX\n0  done\n", "\n.SH EXAMPLES\n.EX\norvane info\n"}) {
        EXPECT_NE(page.find(part), std::string::npos) << part;
    }
}

TEST(DescriptionsTest, ThePageHasTheExitStatusesOfTheHelp) {
    const std::string page = contentOf(std::string(DOCS_FOLDER) + "/orvane.md");
    const std::string help = runTool({"--help"}).out;
    for (const std::string& line : linesOf(help.substr(help.find("Exit status:\n") + 13))) {
        if (line.empty()) {
            return;
        }
        const std::string row = "\n| " + line.substr(2, 1) + " | " + line.substr(5) + " |\n";
        EXPECT_NE(page.find(row), std::string::npos) << row;
    }
}

TEST(DescriptionsTest, BashOffersWhatTheToolKnows) {
    EXPECT_EQ(offeredByBash({"re"}), (Offered{"record", "replay"}));
    EXPECT_EQ(offeredByBash({"--host", "command", "--json", "config", ""}), Offered{"check"});
    EXPECT_EQ(offeredByBash({"watch", "--co"}), Offered{"--count"});
    EXPECT_EQ(offeredByBash({"nonsense", "--ho"}), Offered{"--host"});
}

TEST(DescriptionsTest, BashOffersFilesAndWaveformsWhereTheyBelong) {
    const TemporaryDirectory directory;
    directory.Write("squawk.toml", "");
    EXPECT_EQ(offeredByBash({"drive", "sq"}), Offered{"squawk.toml"});
    EXPECT_EQ(offeredByBash({"drive", "p", "--input", "sq"}), (Offered{"squawk.toml", "square"}));
    EXPECT_EQ(offeredByBash({"record", "x", "-o", "sq"}), Offered{"squawk.toml"});
    EXPECT_EQ(offeredByBash({"replay", "--speed", "sq"}), Offered{});
    EXPECT_EQ(offeredByBash({"get", "sq"}), Offered{});
}

TEST(DescriptionsTest, AreInstalledWithTheTool) {
    const TemporaryDirectory directory;
    outputOf(std::string(CMAKE) + " --install " + BUILD_FOLDER + " --component tool --prefix " +
             directory.Path().string());
    for (const char* const file :
         {"bin/orvane", "share/bash-completion/completions/orvane",
          "share/zsh/site-functions/_orvane", "share/fish/vendor_completions.d/orvane.fish"}) {
        EXPECT_TRUE(directory.Has(file)) << file;
    }
    EXPECT_EQ(directory.Read("share/man/man1/orvane.1"), runTool({"__man"}).out);
}

} // namespace
