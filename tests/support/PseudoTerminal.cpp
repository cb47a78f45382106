#include "support/PseudoTerminal.h"

#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

PseudoTerminal::PseudoTerminal() {
    if (::openpty(&ours, &theirs, nullptr, nullptr, nullptr) != 0) {
        throw std::system_error(errno, std::generic_category(), "openpty");
    }
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        ::unsetenv(name);
    }
    ::setenv("TERM", "xterm", 1);
    ::setenv("NO_COLOR", "1", 1);
}

PseudoTerminal::~PseudoTerminal() {
    ::close(ours);
    ::close(theirs);
}

void PseudoTerminal::Resize(std::size_t columns, std::size_t rows) const {
    winsize size{};
    size.ws_col = static_cast<unsigned short>(columns);
    size.ws_row = static_cast<unsigned short>(rows);
    ::ioctl(ours, TIOCSWINSZ, &size);
}
