#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "headless/lists/ParsedNumber.h"

namespace headless {

// Removes blanks and tabs from both ends.
std::string_view trimmed(std::string_view text);

// The text after a statement's first word, read from left to right. Throws std::invalid_argument if
// something is missing or malformed. Borrows the text.
class Arguments final {
public:
    explicit Arguments(std::string_view statementArguments);

    bool AtEnd() const { return text.empty(); }
    // Takes the word if it comes next.
    bool Take(std::string_view word);

    // `what` names the missing word in the error.
    std::string Word(const char* what);
    // All that is left. Removes surrounding quotes; within them \" and \\ stand for " and \.
    std::string Rest(const char* what);
    // The same, but empty if nothing is left.
    std::string RestOrNothing() { return AtEnd() ? std::string() : Rest("the text"); }
    // Everything up to the first of the words, which is left, or to the end; quotes as above.
    std::string Until(const std::vector<std::string_view>& words, const char* what);

    template <class Number>
    Number TakeNumber(const char* what) {
        const std::string word = Word(what);
        if (const auto number = parsedNumber<Number>(word)) {
            return *number;
        }
        throw std::invalid_argument("\"" + word + "\" is not a number that fits here");
    }
    // "2s", "500ms" or "1min", as seconds.
    double TakeSeconds();

    // Throws if anything is left.
    void RequireEnd() const;

private:
    void drop(std::size_t characters);
    std::string quoted(const char* what);

    std::string_view text;
};

} // namespace headless
