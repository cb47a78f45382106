#include "tools/orvane/cli/Interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>

namespace orvane::tool {

namespace {

// The handler writes to this pipe, so that an interrupt just before a sleep still ends the sleep.
std::array<int, 2> wakePipe{-1, -1};
volatile std::sig_atomic_t interrupted = 0;

extern "C" void onInterrupt(int /*signal*/) {
    const int error = errno;
    interrupted = 1;
    [[maybe_unused]] const ssize_t written = ::write(wakePipe[1], "", 1);
    errno = error;
}

} // namespace

void catchInterrupts() {
    if (wakePipe[0] != -1 || ::pipe2(wakePipe.data(), O_CLOEXEC) != 0) {
        return;
    }
    struct sigaction action {};
    action.sa_handler = onInterrupt;
    struct sigaction before {};
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ::sigaction(signal, &action, &before);
    }
    // As nohup asks.
    if (before.sa_handler == SIG_IGN) {
        ::sigaction(SIGHUP, &before, nullptr);
    }
}

bool isInterrupted() {
    return interrupted != 0;
}

bool sleepUntil(std::chrono::steady_clock::time_point moment) {
    using std::chrono::milliseconds;
    while (!isInterrupted()) {
        const auto left =
            std::chrono::ceil<milliseconds>(moment - std::chrono::steady_clock::now());
        if (left <= milliseconds(0)) {
            return true;
        }
        pollfd wake{.fd = wakePipe[0], .events = POLLIN, .revents = 0};
        const auto longest = milliseconds(std::chrono::hours(1));
        ::poll(&wake, 1, static_cast<int>(std::min(left, longest).count()));
    }
    return false;
}

} // namespace orvane::tool
