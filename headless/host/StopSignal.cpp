#include "headless/host/StopSignal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

#include "headless/host/TerminalSettings.h"

namespace headless {

namespace {

// Globals, because the signal handler can reach nothing else.
volatile std::sig_atomic_t received = 0;
volatile std::sig_atomic_t wakeDescriptor = -1;

extern "C" void onStopSignal(int number) {
    const int interrupted = errno;
    if (received != 0) {
        restoreTerminalSettings();
        // Delivered as soon as this handler returns.
        ::signal(number, SIG_DFL);
        ::raise(number);
    }
    received = 1;
    const std::uint64_t one = 1;
    // A few signals cannot fill the counter; an error here could not be handled anyway.
    [[maybe_unused]] const ssize_t written = ::write(wakeDescriptor, &one, sizeof one);
    errno = interrupted;
}

} // namespace

StopSignal::StopSignal() : descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    received = 0;
    wakeDescriptor = descriptor;
    struct sigaction action {};
    action.sa_handler = &onStopSignal;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, &formerInterrupt);
    ::sigaction(SIGTERM, &action, &formerTerminate);
}

StopSignal::~StopSignal() {
    ::sigaction(SIGINT, &formerInterrupt, nullptr);
    ::sigaction(SIGTERM, &formerTerminate, nullptr);
    received = 0;
    wakeDescriptor = -1;
    ::close(descriptor);
}

bool StopSignal::Received() {
    return received != 0;
}

} // namespace headless
