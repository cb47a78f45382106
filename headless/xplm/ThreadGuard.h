#pragma once

#include <functional>
#include <utility>

#include "headless/xplm/Notices.h"

namespace headless {

// Its address is another one in each thread, which costs nothing to tell. The library is never
// loaded late, so the mark has a fixed place.
extern constinit thread_local char threadMark __attribute__((tls_model("initial-exec")));

// Reports calls from threads other than the simulator's, each function of each caller once. The
// simulator's thread is the one that made the guard; its calls can be watched, which costs those
// nothing who do not ask for it.
class ThreadGuard final {
public:
    using Watch = std::function<void(const char* function)>;

    explicit ThreadGuard(Notices& simulatorNotices)
        : notices(simulatorNotices), simulatorThread(&threadMark), unwatched(&threadMark) {}
    ThreadGuard(const ThreadGuard&) = delete;
    ThreadGuard& operator=(const ThreadGuard&) = delete;

    // False for a call from another thread.
    bool Check(const char* function) { return unwatched == &threadMark || examine(function); }

    // Is told of every call on the simulator's thread; empty for nobody. Returns who was before.
    Watch SetWatch(Watch callWatch) {
        unwatched = callWatch ? nullptr : simulatorThread;
        return std::exchange(watch, std::move(callWatch));
    }

private:
    bool examine(const char* function);
    void report(const char* function);

    Notices& notices;
    const char* simulatorThread;
    // The simulator's thread while nobody watches it, else null.
    const char* unwatched;
    Watch watch;
};

} // namespace headless
