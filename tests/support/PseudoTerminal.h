#pragma once

#include <cstddef>

// A terminal that nobody sits at, with an environment to match: TERM is xterm, NO_COLOR is set, and
// no locale is.
class PseudoTerminal final {
public:
    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    void Resize(std::size_t columns, std::size_t rows) const;
    // What a program has as its standard output.
    int FileDescriptor() const { return theirs; }
    // The screen to read and the keyboard to write to.
    int UserDescriptor() const { return ours; }

private:
    int ours = -1;
    int theirs = -1;
};
