#include "tools/orvane/cli/CommandTree.h"

#include <algorithm>

#include <CLI/App.hpp>

namespace orvane::tool {

std::string fullNameOf(const CLI::App& app) {
    const CLI::App* const parent = app.get_parent();
    return (parent == nullptr ? "" : fullNameOf(*parent) + " ") + app.get_name();
}

std::vector<const CLI::App*> subcommandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App* /*each*/) { return true; });
}

const CLI::App* findSubcommand(const CLI::App& app, const std::string& name) {
    const std::vector<const CLI::App*> all = subcommandsOf(app);
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const CLI::App* each) { return each->get_name() == name; });
    return found == all.end() ? nullptr : *found;
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& app) {
    return app.get_options([](const CLI::Option* each) { return each->nonpositional(); });
}

std::vector<const CLI::Option*> allOptionsOf(const CLI::App& app) {
    std::vector<const CLI::Option*> all = optionsOf(app);
    if (const CLI::App* const parent = app.get_parent()) {
        for (const CLI::Option* const option : allOptionsOf(*parent)) {
            // Each command has its own --help.
            if (option->get_name() != "--help") {
                all.push_back(option);
            }
        }
    }
    return all;
}

std::vector<std::string> namesOf(const CLI::Option& option) {
    return CLI::detail::split(option.get_name(false, true), ',');
}

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() != 0;
}

std::vector<const CLI::Option*> argumentsOf(const CLI::App& app) {
    return app.get_options([](const CLI::Option* each) { return each->get_positional(); });
}

} // namespace orvane::tool
