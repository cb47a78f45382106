#pragma once

#include <csignal>

// Blocks SIGPIPE for the calling thread for as long as an object lives.
//
// A send to a client that has gone then fails with EPIPE and raises nothing. What the process does
// with the signal otherwise is not touched: that belongs to the simulator. errno stays as it is.
class SigpipeBlock final {
public:
    SigpipeBlock();
    // Puts the thread's mask back.
    ~SigpipeBlock();
    SigpipeBlock(const SigpipeBlock&) = delete;
    SigpipeBlock& operator=(const SigpipeBlock&) = delete;

    // Takes the signal of a send that has failed with EPIPE meanwhile. One that was pending before
    // stays pending.
    void TakeSignal() const;

private:
    bool wasPending = false;
    sigset_t formerMask;
};
