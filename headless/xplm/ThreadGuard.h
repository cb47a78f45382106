#pragma once

#include "headless/xplm/Notices.h"

#include <pthread.h>

namespace headless {

// Reports calls from threads other than the simulator's, each function once. The simulator's thread
// is the one that made the guard.
class ThreadGuard final {
public:
    explicit ThreadGuard(Notices& simulatorNotices)
        : notices(simulatorNotices), simulatorThread(::pthread_self()) {}
    ThreadGuard(const ThreadGuard&) = delete;
    ThreadGuard& operator=(const ThreadGuard&) = delete;

    // False for a call from another thread.
    bool Check(const char* function) {
        const bool right = ::pthread_equal(simulatorThread, ::pthread_self()) != 0;
        if (!right) {
            report(function);
        }
        return right;
    }

private:
    void report(const char* function) {
        notices.Once(std::string(function) +
                     " was called from another thread; the SDK belongs to the simulator's thread");
    }

    Notices& notices;
    pthread_t simulatorThread;
};

} // namespace headless
