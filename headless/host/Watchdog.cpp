#include "headless/host/Watchdog.h"

#include <execinfo.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <system_error>

namespace headless {

namespace {

// How often a callback is looked at before it is given up.
constexpr int kLooks = 4;

// All that the signal handler can reach.
Simulator* watched = nullptr;
std::uint64_t callSeen = 0;
int looks = 0;

int watchdogSignal() {
    // Not one that plugins are likely to use.
    return SIGRTMAX - 3;
}

void say(const char* text) {
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, std::strlen(text));
}

[[noreturn]] void giveUp(const PluginContext& context) {
    const PluginTexts* const texts = watched->Plugins().TextsOf(context.Plugin());
    say("headless-sim: ");
    say(texts == nullptr ? "a plugin" : texts->path.c_str());
    say(": the plugin does not come back from its ");
    say(context.Callback());
    say("; it is here:\n");
    std::array<void*, 64> frames{};
    const int depth = ::backtrace(frames.data(), static_cast<int>(frames.size()));
    ::backtrace_symbols_fd(frames.data(), depth, STDERR_FILENO);
    ::_exit(Watchdog::kExitStatus);
}

extern "C" void onLook(int /*number*/) {
    const int interrupted = errno;
    const PluginContext& context = watched->Context();
    const bool sameCall =
        context.Plugin() != XPLM_PLUGIN_XPLANE && context.CallNumber() == callSeen;
    looks = sameCall ? looks + 1 : 0;
    callSeen = context.CallNumber();
    if (looks >= kLooks) {
        giveUp(context);
    }
    errno = interrupted;
}

timespec timeOf(double seconds) {
    const double whole = std::floor(seconds);
    return {static_cast<time_t>(whole), static_cast<long>((seconds - whole) * 1e9)};
}

} // namespace

Watchdog::Watchdog(Simulator& watchedSimulator, double seconds) {
    watched = &watchedSimulator;
    looks = 0;
    // Its first call loads a library, which a signal handler must not.
    void* frame = nullptr;
    ::backtrace(&frame, 1);
    struct sigaction action {};
    action.sa_handler = &onLook;
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(watchdogSignal(), &action, nullptr);
    struct sigevent event {};
    event.sigev_notify = SIGEV_THREAD_ID;
    event.sigev_signo = watchdogSignal();
    event._sigev_un._tid = ::gettid();
    if (::timer_create(CLOCK_MONOTONIC, &event, &timer) != 0) {
        throw std::system_error(errno, std::generic_category(), "timer_create");
    }
    const timespec step = timeOf(seconds / kLooks);
    const itimerspec times{step, step};
    ::timer_settime(timer, 0, &times, nullptr);
}

Watchdog::~Watchdog() {
    ::timer_delete(timer);
    ::signal(watchdogSignal(), SIG_IGN);
}

} // namespace headless
