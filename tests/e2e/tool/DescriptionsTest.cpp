// The man page and the completions say what the tool says of itself: no option less, none more.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "e2e/ToolRun.h"
#include "support/TemporaryDirectory.h"

namespace {

using Words = std::set<std::string>;

std::string contentOf(const std::string& name) {
    const std::ifstream file(std::string(TOOL_FOLDER) + "/" + name);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

// All that a pattern's first group matches.
Words allOf(const std::string& text, const std::string& pattern) {
    const std::regex expression(pattern);
    Words found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end;
         ++match) {
        found.insert((*match)[1]);
    }
    return found;
}

struct Help {
    Words options;
    std::vector<std::string> subcommands;
};

// What `orvane PATH --help` lists.
Help helpOf(const std::string& path) {
    std::vector<std::string> arguments = wordsOf(path);
    arguments.emplace_back("--help");
    const std::string text = runTool(arguments).out;
    Help help;
    bool inSubcommands = false;
    for (const std::string& line : linesOf(text)) {
        inSubcommands = line == "Subcommands:" || (inSubcommands && line.starts_with("  "));
        std::smatch match;
        if (inSubcommands && std::regex_search(line, match, std::regex("^  ([a-z]+) "))) {
            help.subcommands.push_back(match[1]);
        }
        if (std::regex_search(line, match, std::regex("^  (-[^ ]+)"))) {
            const Words names = allOf(match[1], "(--?[A-Za-z-]+)");
            help.options.insert(names.begin(), names.end());
        }
    }
    return help;
}

// All subcommands and theirs, "" for the tool itself.
std::map<std::string, Help> wholeHelp() {
    std::map<std::string, Help> all;
    std::vector<std::string> left{""};
    while (!left.empty()) {
        const std::string path = left.back();
        left.pop_back();
        all[path] = helpOf(path);
        for (const std::string& name : all[path].subcommands) {
            left.push_back(path.empty() ? name : path + " " + name);
        }
    }
    return all;
}

// What a subcommand has beyond the options of every command.
Words ownOptions(const Help& help) {
    Words options = help.options;
    options.erase("-h");
    options.erase("--help");
    return options;
}

// The part of a text from the first line that begins with `begin` to the next with `end`.
std::string partOf(const std::string& text, const std::string& begin, const std::string& end) {
    std::string part;
    bool inside = false;
    for (const std::string& line : linesOf(text)) {
        if (std::regex_search(line, std::regex("^" + begin))) {
            inside = true;
        } else if (inside && std::regex_search(line, std::regex("^" + end))) {
            break;
        }
        part += inside ? line + "\n" : "";
    }
    return part;
}

// The standard output of a shell; throws when it fails.
std::string outputOfBash(const std::string& script) {
    const std::string command = "bash -c '" + script + "' 2>&1";
    FILE* const pipe = ::popen(command.c_str(), "r");
    std::string output;
    std::array<char, 4096> block{};
    std::size_t count = 0;
    while ((count = std::fread(block.data(), 1, block.size(), pipe)) > 0) {
        output.append(block.data(), count);
    }
    const int status = ::pclose(pipe);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error("bash failed: " + output);
    }
    return output;
}

// What bash offers for the last of these words.
Words completionsOf(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += " \"" + word + "\"";
    }
    const std::string script = std::string("source ") + TOOL_FOLDER + "/completion/orvane.bash; " +
                               "COMP_WORDS=(orvane" + line +
                               "); COMP_CWORD=" + std::to_string(words.size()) +
                               "; _orvane; printf \"%s\\n\" \"${COMPREPLY[@]}\"";
    const std::vector<std::string> found = linesOf(outputOfBash(script));
    Words offered(found.begin(), found.end());
    offered.erase("");
    return offered;
}

Words completionsOf(const std::string& path, const std::string& current) {
    std::vector<std::string> words = wordsOf(path);
    words.push_back(current);
    return completionsOf(words);
}

Words asSet(const std::vector<std::string>& words) {
    return {words.begin(), words.end()};
}

const std::map<std::string, Help>& help() {
    static const std::map<std::string, Help> all = wholeHelp();
    return all;
}

TEST(DescriptionsTest, SeeAllOfTheToolsHelp) {
    EXPECT_GE(help().size(), 18U);
    EXPECT_TRUE(help().at("").options.contains("--timeout"));
    EXPECT_TRUE(help().at("command observe").options.contains("-i"));
    EXPECT_TRUE(help().at("config").subcommands == std::vector<std::string>{"check"});
}

TEST(DescriptionsTest, EveryHelpEndsInExamples) {
    for (const auto& [path, each] : help()) {
        std::vector<std::string> arguments = wordsOf(path);
        arguments.emplace_back("--help");
        const std::string text = runTool(arguments).out;
        const std::size_t examples = text.rfind("\nExample");
        ASSERT_NE(examples, std::string::npos) << path;
        EXPECT_EQ(text.find("\n\n", examples + 1), std::string::npos) << path;
        EXPECT_NE(text.find("orvane " + path, examples), std::string::npos) << path;
    }
}

TEST(DescriptionsTest, TheManPageHasEverySubcommandAndOptionAndNoOther) {
    const std::string page =
        std::regex_replace(contentOf("orvane.1"), std::regex(R"(\\f[A-Z]|\\(?=-))"), "");
    Words described = allOf(page, "\n\\.SS \"?orvane ([a-z]+(?: [a-z]+)?)(?![a-z])");
    for (const auto& [path, each] : help()) {
        if (path.empty()) {
            continue;
        }
        EXPECT_EQ(described.erase(path), 1U) << path;
        const std::string part =
            partOf(page, "\\.SS \"?orvane " + path + "(\"| \\S*[A-Z]|$)", "\\.S[SH]");
        const std::string heads = [&] {
            std::string lines;
            const std::vector<std::string> all = linesOf(part);
            for (std::size_t i = 1; i < all.size(); ++i) {
                lines += all[i - 1] == ".TP" ? all[i] + "\n" : "";
            }
            return lines;
        }();
        EXPECT_EQ(allOf(heads, "(--?[A-Za-z-]+)"), ownOptions(each)) << path << "\n" << part;
    }
    EXPECT_EQ(described, Words{});
    const std::string general = partOf(page, "\\.SH OPTIONS", "\\.SH COMMANDS");
    EXPECT_EQ(allOf(general, "\n\\.(?:B|BI|BR) (?:\"?-h\"?, \", \" )?(--?[a-z]+)"),
              (Words{"--host", "--port", "--timeout", "--json", "--csv", "-h"}));
}

TEST(DescriptionsTest, BashOffersEveryOption) {
    const Words general = help().at("").options;
    for (const auto& [path, each] : help()) {
        Words expected = each.options;
        expected.insert(general.begin(), general.end());
        // Of the short ones, only what begins like the word itself.
        EXPECT_EQ(completionsOf(path, "-"), expected) << path;
    }
}

TEST(DescriptionsTest, BashOffersEverySubcommand) {
    for (const auto& [path, each] : help()) {
        if (!each.subcommands.empty()) {
            EXPECT_EQ(completionsOf(path, ""), asSet(each.subcommands)) << path;
        }
    }
    EXPECT_EQ(completionsOf({"re"}), (Words{"record", "replay"}));
    EXPECT_EQ(completionsOf({"--host", "command", "--json", "config", ""}), Words{"check"});
}

TEST(DescriptionsTest, BashOffersFilesAndWaveformsWhereTheyBelong) {
    const TemporaryDirectory directory;
    directory.Write("squawk.toml", "");
    EXPECT_EQ(completionsOf({"drive", "sq"}), Words{"squawk.toml"});
    EXPECT_EQ(completionsOf({"drive", "p", "--input", "sq"}), (Words{"squawk.toml", "square"}));
    EXPECT_EQ(completionsOf({"record", "x", "-o", "sq"}), Words{"squawk.toml"});
    EXPECT_EQ(completionsOf({"replay", "--speed", "sq"}), Words{});
    EXPECT_EQ(completionsOf({"get", "sq"}), Words{});
}

// In quotes, or in braces with another.
constexpr const char* kZshOption = "(?:'|\\{|,|\\))(--?[A-Za-z]+)(?=[=\\[},])";

TEST(DescriptionsTest, ZshKnowsEverySubcommandAndOption) {
    const std::string script = contentOf("completion/_orvane");
    for (const auto& [path, each] : help()) {
        const std::string function =
            std::regex_replace("_orvane " + path, std::regex(" (?=.)"), "_");
        const std::string name = path.empty() ? "_orvane" : function;
        const std::string body = partOf(script, name + "\\(\\) \\{", "\\}");
        ASSERT_NE(body, "") << path;
        if (!path.empty()) {
            EXPECT_EQ(allOf(body, kZshOption), ownOptions(each)) << path;
        }
        EXPECT_EQ(allOf(body, "['(]'?([a-z]+):[a-z]"), asSet(each.subcommands)) << path;
    }
    EXPECT_EQ(allOf(partOf(script, "_orvane_every_command\\(\\) \\{", "\\}"), kZshOption),
              help().at("").options);
}

TEST(DescriptionsTest, FishKnowsEverySubcommandAndOption) {
    const std::string script = contentOf("completion/orvane.fish");
    for (const auto& [path, each] : help()) {
        Words options;
        for (const std::string& line : linesOf(script)) {
            const std::string condition = path.empty()
                                              ? "complete -c orvane -"
                                              : "complete -c orvane -n '__orvane_in " + path + "' ";
            if (!line.starts_with(condition) || (path.empty() && line.find(" -n ") < 20)) {
                continue;
            }
            for (const std::string& name : allOf(line, " -l ([a-z]+)")) {
                options.insert("--" + name);
            }
            for (const std::string& name : allOf(line, " -s ([A-Za-z])")) {
                options.insert("-" + name);
            }
        }
        EXPECT_EQ(options, path.empty() ? each.options : ownOptions(each)) << path;
    }
    EXPECT_EQ(allOf(script, "-n \\$none -a ([a-z]+)"), asSet(help().at("").subcommands));
    EXPECT_EQ(allOf(script, "-n \\$no_action -a ([a-z]+)"),
              asSet(help().at("command").subcommands));
    EXPECT_EQ(allOf(script, "not __orvane_in check' -a ([a-z]+)"),
              asSet(help().at("config").subcommands));
}

TEST(DescriptionsTest, AreInstalledWithTheTool) {
    const TemporaryDirectory directory;
    outputOfBash(std::string(CMAKE) + " --install " + BUILD_FOLDER + " --component tool --prefix " +
                 directory.Path().string());
    for (const char* const file :
         {"bin/orvane", "share/man/man1/orvane.1", "share/bash-completion/completions/orvane",
          "share/zsh/site-functions/_orvane", "share/fish/vendor_completions.d/orvane.fish"}) {
        EXPECT_TRUE(directory.Has(file)) << file;
    }
}

} // namespace
