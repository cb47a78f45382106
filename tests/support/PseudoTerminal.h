#pragma once

#include <cstddef>

// A pseudo terminal. Sets TERM to xterm, sets NO_COLOR, and unsets the locale.
class PseudoTerminal final {
public:
    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    void Resize(std::size_t columns, std::size_t rows) const;
    // The program's end.
    int FileDescriptor() const { return theirs; }
    // The screen to read and the keyboard to write to.
    int UserDescriptor() const { return ours; }

private:
    int ours = -1;
    int theirs = -1;
};
