#include "network/SigpipeBlock.h"

#include <cerrno>
#include <ctime>

namespace {

sigset_t sigpipeAlone() {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGPIPE);
    return signals;
}

bool isSigpipePending() {
    sigset_t pending;
    ::sigpending(&pending);
    return ::sigismember(&pending, SIGPIPE) == 1;
}

} // namespace

// sigprocmask, too, changes the calling thread's mask. pthread_sigmask would be the portable name,
// but binds to a symbol that older systems do not have.
SigpipeBlock::SigpipeBlock() {
    const sigset_t sigpipe = sigpipeAlone();
    ::sigprocmask(SIG_BLOCK, &sigpipe, &formerMask);
    // If it was not blocked before, it cannot be pending.
    wasPending = ::sigismember(&formerMask, SIGPIPE) == 1 && isSigpipePending();
}

SigpipeBlock::~SigpipeBlock() {
    const int error = errno;
    ::sigprocmask(SIG_SETMASK, &formerMask, nullptr);
    errno = error;
}

void SigpipeBlock::TakeSignal() const {
    if (wasPending) {
        return;
    }
    const int error = errno;
    const sigset_t sigpipe = sigpipeAlone();
    const timespec noWait{0, 0};
    ::sigtimedwait(&sigpipe, nullptr, &noWait);
    errno = error;
}
