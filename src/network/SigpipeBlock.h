#pragma once

#include <csignal>

// Blocks SIGPIPE for the calling thread during the object's lifetime.
//
// A send to a client that is gone then fails with EPIPE and raises no signal. The process's
// handling of the signal belongs to the simulator and is not touched. errno is preserved.
class SigpipeBlock final {
public:
    SigpipeBlock();
    // Puts the thread's mask back.
    ~SigpipeBlock();
    SigpipeBlock(const SigpipeBlock&) = delete;
    SigpipeBlock& operator=(const SigpipeBlock&) = delete;

    // Discards the signal of a send that has just failed with EPIPE. A signal that was pending
    // before stays pending.
    void TakeSignal() const;

private:
    bool wasPending = false;
    sigset_t formerMask;
};
