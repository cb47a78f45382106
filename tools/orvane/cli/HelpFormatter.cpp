#include "tools/orvane/cli/HelpFormatter.h"

#include <sstream>
#include <vector>

#include <fmt/format.h>

#include "tools/orvane/cli/CommandTree.h"
#include "tools/orvane/cli/GlobalOptions.h"

namespace orvane::tool {

namespace {

// The long names of the options that every subcommand has.
std::string namesOfGlobals(const CLI::App& root) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : optionsOf(root)) {
        if (option->get_group() == kGlobalGroup) {
            names.push_back(option->get_name());
        }
    }
    return fmt::format("{}", fmt::join(names, ", "));
}

// Folds text to fit after the column of names on a terminal of 80 columns.
std::string folded(const std::string& text) {
    constexpr std::size_t kColumns = 50;
    std::string result;
    std::size_t column = 0;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const bool fits = column + 1 + word.size() <= kColumns;
        result += column == 0 ? "" : fits ? " " : "\n";
        column = column > 0 && fits ? column + 1 + word.size() : word.size();
        result += word;
    }
    return result;
}

} // namespace

std::string sentenceOn(const CLI::Option& option) {
    const std::string& fallback = option.get_default_str();
    return option.get_description() + (fallback.empty() ? "" : "; " + fallback + " if not given");
}

HelpFormatter::HelpFormatter() {
    label("Positionals", "Arguments");
    label("SUBCOMMAND", "COMMAND");
}

std::string HelpFormatter::make_option_name(const CLI::Option* option, bool isPositional) const {
    const std::string name = option->get_name(isPositional, !isPositional);
    return !isPositional && takesValue(*option) ? name + " " + option->get_type_name() : name;
}

std::string HelpFormatter::make_option_opts(const CLI::Option* /*option*/) const {
    return "";
}

std::string HelpFormatter::make_option_desc(const CLI::Option* option) const {
    return folded(sentenceOn(*option));
}

std::string HelpFormatter::make_subcommand(const CLI::App* command) const {
    std::ostringstream text;
    CLI::detail::format_help(text, command->get_name(), folded(command->get_description()),
                             get_column_width());
    return text.str();
}

std::string HelpFormatter::make_footer(const CLI::App* app) const {
    const CLI::App* root = app;
    while (root->get_parent() != nullptr) {
        root = root->get_parent();
    }
    const std::string others =
        app == root ? ""
                    : fmt::format("Every command also takes {}; see \"orvane --help\".\n\n",
                                  namesOfGlobals(*root));
    return others + CLI::Formatter::make_footer(app);
}

} // namespace orvane::tool
