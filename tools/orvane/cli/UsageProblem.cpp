#include "tools/orvane/cli/UsageProblem.h"

#include <algorithm>
#include <vector>

#include <CLI/App.hpp>
#include <fmt/core.h>

#include "tools/orvane/cli/CommandTree.h"
#include "tools/orvane/cli/NearestWord.h"

namespace orvane::tool {

namespace {

const CLI::App& lastParsed(const CLI::App& app) {
    const std::vector<CLI::App*> parsed = app.get_subcommands();
    return parsed.empty() ? app : lastParsed(*parsed.back());
}

bool needsSubcommand(const CLI::App& app) {
    return app.get_require_subcommand_min() > 0;
}

std::string suggestion(const std::string& nearest) {
    return nearest.empty() ? "" : fmt::format("; did you mean {}?", nearest);
}

std::string unknownWord(const CLI::App& app, const std::string& word) {
    if (word.starts_with('-')) {
        const std::string name = word.substr(0, word.find('='));
        std::vector<std::string> known;
        for (const CLI::Option* const option : allOptionsOf(app)) {
            const std::vector<std::string> names = namesOf(*option);
            known.insert(known.end(), names.begin(), names.end());
        }
        return fmt::format("unknown option {}{}", name, suggestion(nearestOption(name, known)));
    }
    return needsSubcommand(app) ? unknownCommand(app, word)
                                : fmt::format("unexpected argument \"{}\"", word);
}

} // namespace

std::string unknownCommand(const CLI::App& app, const std::string& word) {
    std::vector<std::string> names;
    for (const CLI::App* const command : subcommandsOf(app)) {
        names.push_back(command->get_name());
    }
    return fmt::format("\"{}\" is not a command of {}{}", word, fullNameOf(app),
                       suggestion(nearestWord(word, names)));
}

std::string usageProblem(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& last = lastParsed(app);
    const std::string advice = fmt::format(" (see \"{} --help\")", fullNameOf(last));
    const std::vector<std::string> leftOver = app.remaining(true);
    const auto word = std::find_if(leftOver.begin(), leftOver.end(),
                                   [](const std::string& each) { return each != "--"; });
    if (word != leftOver.end()) {
        return unknownWord(last, *word) + advice;
    }
    if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr && needsSubcommand(last)) {
        return "the command is missing" + advice;
    }
    const std::string text = error.what();
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
        return text.substr(0, text.find(':')) + " needs exactly one value" + advice;
    }
    return text + advice;
}

} // namespace orvane::tool
