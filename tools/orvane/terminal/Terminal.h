#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orvane::tool {

// What the terminal of a file descriptor can do. A pipe, a file and TERM=dumb are not terminals:
// nothing is animated and nothing is coloured there.
class Terminal final {
public:
    explicit Terminal(int fileDescriptor);

    bool IsTerminal() const { return isTerminal; }
    // Also false when NO_COLOR is set and not empty.
    bool MayColour() const { return mayColour; }
    // By the locale's name.
    bool KnowsUnicode() const { return knowsUnicode; }

    // As they are now; 80 and 24 where that cannot be known.
    std::size_t Columns() const;
    std::size_t Rows() const;

    // The text as it is where nothing is coloured.
    std::string Bold(std::string_view text) const;

private:
    const int fileDescriptor;
    const bool isTerminal;
    const bool mayColour;
    const bool knowsUnicode;
};

} // namespace orvane::tool
