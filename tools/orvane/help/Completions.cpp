#include "tools/orvane/help/Completions.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include <CLI/App.hpp>
#include <fmt/core.h>

#include "tools/orvane/cli/CommandTree.h"

namespace orvane::tool {

namespace {

using Words = std::vector<std::string>;
using OfferMore = std::function<std::string(const std::string&, const std::string&)>;

// What the last word belongs to.
struct Place {
    const CLI::App* command = nullptr;
    // Set if the last word is the value of an option.
    const CLI::Option* option = nullptr;
};

const CLI::Option* findOption(const CLI::App& app, const std::string& name) {
    for (const CLI::Option* const option : allOptionsOf(app)) {
        const Words names = namesOf(*option);
        if (std::find(names.begin(), names.end(), name) != names.end()) {
            return option;
        }
    }
    return nullptr;
}

Place placeAfter(const CLI::App& app, const Words& words) {
    Place place{&app, nullptr};
    for (const std::string& word : words) {
        // A shell may make three words of "--host=name".
        if (std::exchange(place.option, word == "=" ? place.option : nullptr) != nullptr) {
            continue;
        }
        const CLI::Option* const option = findOption(*place.command, word);
        const CLI::App* const command = findSubcommand(*place.command, word);
        if (option != nullptr && takesValue(*option)) {
            place.option = option;
        } else if (command != nullptr && command->get_name() != "help") {
            // After "help" comes the same as after the tool's name.
            place.command = command;
        }
    }
    return place;
}

std::string candidate(const std::string& word, const std::string& meaning) {
    return meaning.empty() ? word + "\n" : fmt::format("{}\t{}\n", word, meaning);
}

std::string valuesOf(const CLI::Option& option, const std::string& begin,
                     const OfferMore& offerMore) {
    std::string lines;
    for (const std::string& each : CLI::detail::split(option.get_type_name(), '|')) {
        const bool isWord = std::none_of(each.begin(), each.end(), [](unsigned char letter) {
            return std::isupper(letter) != 0;
        });
        if (each == "FILE" || each == "FOLDER") {
            lines += ":files\n";
        } else if (isWord && each.starts_with(begin)) {
            lines += candidate(each, "");
        } else if (!isWord && offerMore) {
            lines += offerMore(each, begin);
        }
    }
    return lines;
}

} // namespace

std::string completionsOf(const CLI::App& app, const Words& words, const OfferMore& offerMore) {
    const std::string begin = words.empty() ? "" : words.back();
    const Place place =
        placeAfter(app, {words.begin(), words.empty() ? words.end() : words.end() - 1});
    if (place.option != nullptr) {
        return valuesOf(*place.option, begin == "=" ? "" : begin, offerMore);
    }
    std::string lines;
    const auto offer = [&](const std::string& word, const std::string& meaning) {
        lines += word.starts_with(begin) ? candidate(word, meaning) : "";
    };
    if (begin.starts_with('-')) {
        for (const CLI::Option* const option : allOptionsOf(*place.command)) {
            for (const std::string& name : namesOf(*option)) {
                offer(name, option->get_description());
            }
        }
        return lines;
    }
    for (const CLI::App* const command : subcommandsOf(*place.command)) {
        offer(command->get_name(), command->get_description());
    }
    for (const CLI::Option* const argument : argumentsOf(*place.command)) {
        lines += valuesOf(*argument, begin, offerMore);
    }
    return lines;
}

} // namespace orvane::tool
