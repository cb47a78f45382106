#pragma once

#include <string>

#include <CLI/CLI.hpp>

namespace orvane::tool {

// What an option does, and its default; for the help and the man page.
std::string sentenceOn(const CLI::Option& option);

// How the tool's help looks.
class HelpFormatter final : public CLI::Formatter {
public:
    HelpFormatter();

private:
    std::string make_option_name(const CLI::Option* option, bool isPositional) const override;
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_option_desc(const CLI::Option* option) const override;
    std::string make_subcommand(const CLI::App* command) const override;
    std::string make_footer(const CLI::App* app) const override;
};

} // namespace orvane::tool
