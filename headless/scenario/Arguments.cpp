#include "headless/scenario/Arguments.h"

#include <algorithm>
#include <charconv>

namespace headless {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr double kLongestSeconds = 1e9;

std::string_view firstWord(std::string_view text) {
    return text.substr(0, text.find_first_of(kBlanks));
}

double secondsIn(std::string_view unit) {
    if (unit == "s") {
        return 1.0;
    }
    if (unit == "ms") {
        return 0.001;
    }
    return unit == "min" ? 60.0 : 0.0;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    const std::size_t last = text.find_last_not_of(kBlanks);
    text = text.substr(0, last == std::string_view::npos ? 0 : last + 1);
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text;
}

Arguments::Arguments(std::string_view statementArguments) : text(trimmed(statementArguments)) {}

bool Arguments::Take(std::string_view word) {
    const bool isNext = firstWord(text) == word;
    if (isNext) {
        drop(word.size());
    }
    return isNext;
}

std::string Arguments::Word(const char* what) {
    std::string word(firstWord(text));
    if (word.empty()) {
        throw std::invalid_argument(std::string(what) + " is missing");
    }
    drop(word.size());
    return word;
}

std::string Arguments::Rest(const char* what) {
    return Until({}, what);
}

std::string Arguments::Until(const std::vector<std::string_view>& words, const char* what) {
    if (text.starts_with('"')) {
        return quoted(what);
    }
    std::string_view left = text;
    while (!left.empty() && std::count(words.begin(), words.end(), firstWord(left)) == 0) {
        left = trimmed(left.substr(firstWord(left).size()));
    }
    std::string taken(trimmed(text.substr(0, text.size() - left.size())));
    if (taken.empty()) {
        throw std::invalid_argument(std::string(what) + " is missing");
    }
    text = left;
    return taken;
}

std::string Arguments::quoted(const char* what) {
    std::string taken;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"') {
            drop(i + 1);
            return taken;
        }
        const bool isEscape = text[i] == '\\' && i + 1 < text.size();
        taken += isEscape ? text[++i] : text[i];
    }
    throw std::invalid_argument(std::string("the quotes around ") + what + " are not closed");
}

double Arguments::TakeSeconds() {
    const std::string word = Word("a time such as 2s");
    double number = 0.0;
    const char* const last = word.data() + word.size();
    const auto [stopped, error] = std::from_chars(word.data(), last, number);
    const double unit = secondsIn({stopped, static_cast<std::size_t>(last - stopped)});
    const double seconds = number * unit;
    if (error != std::errc{} || unit == 0.0 || !(seconds >= 0.0 && seconds <= kLongestSeconds)) {
        throw std::invalid_argument("\"" + word + "\" is not a time such as 2s, 500ms or 1min");
    }
    return seconds;
}

void Arguments::RequireEnd() const {
    if (!text.empty()) {
        throw std::invalid_argument("unexpected \"" + std::string(text) + "\"");
    }
}

void Arguments::drop(std::size_t characters) {
    text = trimmed(text.substr(characters));
}

} // namespace headless
