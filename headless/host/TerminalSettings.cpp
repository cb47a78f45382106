#include "headless/host/TerminalSettings.h"

#include <termios.h>
#include <unistd.h>

#include <csignal>

namespace headless {

namespace {

// Globals, because a signal handler can reach nothing else.
termios kept{};
volatile std::sig_atomic_t isKept = 0;

} // namespace

void keepTerminalSettings() {
    isKept = ::tcgetattr(STDIN_FILENO, &kept) == 0 ? 1 : 0;
}

void restoreTerminalSettings() {
    if (isKept != 0) {
        ::signal(SIGTTOU, SIG_IGN); // it would stop a process in the background
        ::tcsetattr(STDIN_FILENO, TCSANOW, &kept);
    }
}

} // namespace headless
