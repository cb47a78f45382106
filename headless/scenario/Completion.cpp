#include "headless/scenario/Completion.h"

#include <algorithm>
#include <set>
#include <sstream>

#include "headless/scenario/Statement.h"

namespace headless {

namespace {

std::vector<std::string> wordsIn(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::vector<std::string> statementWords() {
    std::vector<std::string> words(statementKinds().size());
    std::transform(statementKinds().begin(), statementKinds().end(), words.begin(),
                   [](const StatementKind& kind) { return kind.word; });
    return words;
}

// Signatures have no blanks.
std::vector<std::string> pluginsIn(Simulator& simulator) {
    std::vector<std::string> signatures;
    PluginRegistry& plugins = simulator.Plugins();
    signatures.reserve(static_cast<std::size_t>(plugins.Count()));
    for (int i = 0; i < plugins.Count(); ++i) {
        signatures.push_back(plugins.TextsOf(plugins.Nth(i))->signature);
    }
    return signatures;
}

NamedThing namedAfter(const std::vector<std::string>& words) {
    if (words.empty()) {
        return NamedThing::Statement;
    }
    if (words.back() == "until") {
        return NamedThing::Dataref;
    }
    const bool isSecond = words.size() == 1;
    const bool isThirdOfCommand = words.size() == 2 && words.front() == "command";
    for (const StatementKind& kind : statementKinds()) {
        if (isSecond && words.front() == kind.word) {
            return kind.names;
        }
    }
    return isThirdOfCommand ? NamedThing::Command : NamedThing::None;
}

std::vector<std::string> subwordsAfter(const std::vector<std::string>& words) {
    if (words.size() != 1) {
        return {};
    }
    if (words.front() == "command") {
        return {"begin", "end", "once"};
    }
    if (words.front() == "aircraft") {
        return {"load", "unload"};
    }
    return words.front() == "log" ? std::vector<std::string>{"expect"} : std::vector<std::string>();
}

std::vector<std::string> candidatesAfter(Simulator& simulator,
                                         const std::vector<std::string>& words) {
    switch (namedAfter(words)) {
    case NamedThing::Dataref:
        return simulator.Datarefs().Names();
    case NamedThing::Command:
        return simulator.Commands().Names();
    case NamedThing::Plugin:
        return pluginsIn(simulator);
    case NamedThing::Statement:
        return statementWords();
    default:
        return subwordsAfter(words);
    }
}

} // namespace

std::vector<std::string> completionsOf(Simulator& simulator, const std::string& before,
                                       const std::string& word) {
    std::set<std::string> found;
    for (const std::string& candidate : candidatesAfter(simulator, wordsIn(before))) {
        if (candidate.starts_with(word)) {
            const std::size_t slash = candidate.find('/', word.size());
            found.insert(candidate.substr(0, slash == std::string::npos ? slash : slash + 1));
        }
    }
    return {found.begin(), found.end()};
}

} // namespace headless
