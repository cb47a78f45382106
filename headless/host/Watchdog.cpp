#include "headless/host/Watchdog.h"

#include <execinfo.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <system_error>

#include "headless/host/CrashReport.h"

namespace headless {

namespace {

// How many times a callback is checked before the process ends.
constexpr int kLooks = 4;

// Globals, because the signal handler can reach nothing else.
Simulator* watched = nullptr;
std::uint64_t callSeen = 0;
int looks = 0;

int watchdogSignal() {
    // A signal that plugins are unlikely to use.
    return SIGRTMAX - 3;
}

extern "C" void onLook(int /*number*/) {
    const int interrupted = errno;
    const PluginContext& context = watched->Context();
    const bool sameCall =
        context.Plugin() != XPLM_PLUGIN_XPLANE && context.CallNumber() == callSeen;
    looks = sameCall ? looks + 1 : 0;
    callSeen = context.CallNumber();
    if (looks >= kLooks) {
        CrashReport::End(*watched, ": the plugin does not return from its ");
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
    // The first call to backtrace() loads a library, which a signal handler must not do.
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
