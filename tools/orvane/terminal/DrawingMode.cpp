#include "tools/orvane/terminal/DrawingMode.h"

#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <utility>

#include "tools/orvane/files/Output.h"

namespace orvane::tool {

namespace {

constexpr std::string_view kHideCursor = "\x1b[?25l";
constexpr std::string_view kShowCursor = "\x1b[?25h";

// Blocks a signal.
class Blocked final {
public:
    explicit Blocked(int signal) {
        sigset_t only;
        ::sigemptyset(&only);
        ::sigaddset(&only, signal);
        ::sigprocmask(SIG_BLOCK, &only, &before);
    }
    ~Blocked() { ::sigprocmask(SIG_SETMASK, &before, nullptr); }
    Blocked(const Blocked&) = delete;
    Blocked& operator=(const Blocked&) = delete;

private:
    sigset_t before{};
};

// State of the signal handlers.
termios settingsBefore{};
bool isTaken = false;
std::string shownDrawing;

// Used by the handlers: ignores a terminal that is gone.
void put(std::string_view text) {
    [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
}

// Changing a terminal's settings from the background would stop the process. A terminal of another
// session has no background.
bool isInForeground() {
    const pid_t group = ::tcgetpgrp(STDOUT_FILENO);
    return group == -1 || group == ::getpgrp();
}

void takeTerminal() {
    isTaken = isInForeground() && ::tcgetattr(STDOUT_FILENO, &settingsBefore) == 0;
    if (isTaken) {
        termios quiet = settingsBefore;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL);
        ::tcsetattr(STDOUT_FILENO, TCSANOW, &quiet);
        put(kHideCursor);
    }
}

// Works even if the shell has already put the process into the background.
void restoreTerminal() {
    if (isTaken) {
        const Blocked notStopped(SIGTTOU);
        put(kShowCursor);
        ::tcflush(STDOUT_FILENO, TCIFLUSH);
        ::tcsetattr(STDOUT_FILENO, TCSANOW, &settingsBefore);
        isTaken = false;
    }
}

// Lets a signal have its default effect. Returns after a stop.
void raiseUncaught(int signal) {
    struct sigaction usual {};
    usual.sa_handler = SIG_DFL;
    struct sigaction ours {};
    ::sigaction(signal, &usual, &ours);
    ::raise(signal);
    sigset_t only;
    ::sigemptyset(&only);
    ::sigaddset(&only, signal);
    sigset_t before;
    ::sigprocmask(SIG_UNBLOCK, &only, &before);
    ::sigprocmask(SIG_SETMASK, &before, nullptr);
    ::sigaction(signal, &ours, nullptr);
}

extern "C" void onEnd(int signal) {
    restoreTerminal();
    raiseUncaught(signal);
}

extern "C" void onStop(int signal) {
    const int error = errno;
    restoreTerminal();
    raiseUncaught(signal);
    takeTerminal();
    put(shownDrawing);
    errno = error;
}

struct Handled {
    int signal;
    void (*handler)(int);
    struct sigaction before;
};

// Ctrl-Z, Ctrl-\ and abort().
std::array<Handled, 3> handledSignals{
    {{SIGTSTP, onStop, {}}, {SIGQUIT, onEnd, {}}, {SIGABRT, onEnd, {}}}};

void handleSignals() {
    for (Handled& each : handledSignals) {
        struct sigaction action {};
        action.sa_handler = each.handler;
        action.sa_flags = SA_RESTART;
        ::sigaction(each.signal, nullptr, &each.before);
        if (each.before.sa_handler != SIG_IGN) {
            ::sigaction(each.signal, &action, nullptr);
        }
    }
}

void leaveSignals() {
    for (const Handled& each : handledSignals) {
        ::sigaction(each.signal, &each.before, nullptr);
    }
}

} // namespace

DrawingMode::DrawingMode() {
    const Blocked notStopped(SIGTSTP);
    shownDrawing.clear();
    handleSignals();
    takeTerminal();
}

DrawingMode::~DrawingMode() {
    const Blocked notStopped(SIGTSTP);
    restoreTerminal();
    leaveSignals();
}

void DrawingMode::Show(const std::string& change, std::string drawing) {
    const Blocked notStopped(SIGTSTP);
    if (!isTaken) {
        takeTerminal();
    }
    writeOut(change);
    shownDrawing = std::move(drawing);
}

} // namespace orvane::tool
