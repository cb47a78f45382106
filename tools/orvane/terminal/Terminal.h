#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::tool {

// What the terminal of a file descriptor can do. A pipe, a file and TERM=dumb do not count as
// terminals: nothing is animated or coloured there.
class Terminal final {
public:
    explicit Terminal(int fileDescriptor);

    bool IsTerminal() const { return isTerminal; }
    // Judged by the name of the locale.
    bool KnowsUnicode() const { return knowsUnicode; }

    // The current size; 80 and 24 if it is unknown.
    std::size_t Columns() const;
    std::size_t Rows() const;

    // The text unchanged if it is not a terminal, or if NO_COLOR is set and not empty.
    std::string Bold(std::string_view text) const;

private:
    const int fileDescriptor;
    const bool isTerminal;
    const bool mayColour;
    const bool knowsUnicode;
};

} // namespace orvane::tool
