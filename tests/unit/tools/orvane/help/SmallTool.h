#pragma once

#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

// A tool with a command of each kind, to be described.
class SmallTool final {
public:
    SmallTool() {
        app.add_flag("--json", flag, "Print JSON");
        app.add_option("--host", text, "The host")->type_name("HOST")->capture_default_str();
        CLI::App& play = *app.add_subcommand("play", "Play a \"file\"");
        play.add_option("FILE", text, "What to play")->type_name("FILE|-")->required();
        play.add_option("-i,--input", text, "What to mix in")->type_name("FILE|sine|square");
        play.footer("It has a\\backslash.\n\nExamples:\n  small play -\n  .x");
        CLI::App& group = *app.add_subcommand("group", "Do more");
        group.require_subcommand(1);
        CLI::App& hold = *group.add_subcommand("hold", "Hold names");
        hold.add_option("NAME", names, "Some names");
        hold.add_flag("--hard", flag, "Hold hard");
        app.add_subcommand("help", "Help");
        app.footer(
            "A paragraph of\ntwo lines.\n\nExit status:\n  0  done\n\nExamples:\n  small play x");
    }

    const CLI::App& App() const { return app; }

private:
    bool flag = false;
    std::string text = "here";
    std::vector<std::string> names;
    CLI::App app{"Do small things", "small"};
};
