#pragma once

#include <string>

#include "headless/xplm/Notices.h"

namespace headless {

// Its address is another one in each thread, which costs nothing to tell. The library is never
// loaded late, so the mark has a fixed place.
extern constinit thread_local char threadMark __attribute__((tls_model("initial-exec")));

// Reports calls from threads other than the simulator's, each function once. The simulator's thread
// is the one that made the guard.
class ThreadGuard final {
public:
    explicit ThreadGuard(Notices& simulatorNotices)
        : notices(simulatorNotices), simulatorThread(&threadMark) {}
    ThreadGuard(const ThreadGuard&) = delete;
    ThreadGuard& operator=(const ThreadGuard&) = delete;

    // False for a call from another thread.
    bool Check(const char* function) {
        const bool right = simulatorThread == &threadMark;
        if (!right) {
            report(function);
        }
        return right;
    }

private:
    void report(const char* function);

    Notices& notices;
    const char* simulatorThread;
};

} // namespace headless
