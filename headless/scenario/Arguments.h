#pragma once

#include <charconv>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace headless {

// Without blanks and tabs around it.
std::string_view trimmed(std::string_view text);

// What follows the word of a statement, taken from left to right. What is missing or malformed
// throws std::invalid_argument. Borrows the text.
class Arguments final {
public:
    explicit Arguments(std::string_view statementArguments);

    bool AtEnd() const { return text.empty(); }
    // Takes the word if it is the next one.
    bool Take(std::string_view word);

    // `what` is said when there is none.
    std::string Word(const char* what);
    // All that is left. Quotes around it are taken off, and in quotes \" and \\ stand for " and \.
    std::string Rest(const char* what);
    // The same; empty when nothing is left.
    std::string RestOrNothing() { return AtEnd() ? std::string() : Rest("the text"); }
    // Up to the first of the words, which is left, or all; quoted as above.
    std::string Until(const std::vector<std::string_view>& words, const char* what);

    template <class Number>
    Number TakeNumber(const char* what) {
        const std::string word = Word(what);
        Number number{};
        const char* const last = word.data() + word.size();
        const auto [stopped, error] = std::from_chars(word.data(), last, number);
        if (error != std::errc{} || stopped != last) {
            throw std::invalid_argument("\"" + word + "\" is not a number that fits here");
        }
        return number;
    }
    // "2s", "500ms" or "1min", as seconds.
    double TakeSeconds();

    // Throws when something is left.
    void RequireEnd() const;

private:
    void drop(std::size_t characters);
    std::string quoted(const char* what);

    std::string_view text;
};

} // namespace headless
