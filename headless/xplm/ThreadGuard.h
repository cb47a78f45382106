#pragma once

#include <functional>

#include "headless/xplm/IPluginObserver.h"
#include "headless/xplm/Notices.h"

namespace headless {

// Its address is another one in each thread, which costs nothing to tell. The library is never
// loaded late, so the mark has a fixed place.
extern constinit thread_local char threadMark __attribute__((tls_model("initial-exec")));

// Reports calls from threads other than the simulator's, each function of each caller once. The
// simulator's thread is the one that made the guard.
//
// While somebody sees the calls no thread is the fast one, so that all calls take the way of a
// stranger's. A call that nobody sees pays nothing for it.
class ThreadGuard final {
public:
    using Watch = std::function<void(const char* function)>;

    explicit ThreadGuard(Notices& simulatorNotices) : notices(simulatorNotices) {}
    ThreadGuard(const ThreadGuard&) = delete;
    ThreadGuard& operator=(const ThreadGuard&) = delete;

    // False for a call from another thread.
    bool Check(const char* function) { return fastThread == &threadMark || examine(function); }
    bool IsOnSimulatorThread() const { return simulatorThread == &threadMark; }

    // Is told of every call on the simulator's thread; empty for nobody. Returns who was before.
    Watch SetWatch(Watch callWatch);

    // Is told of all calls from the simulator's thread; null for nobody. Borrowed.
    void Observe(IPluginObserver* pluginObserver);

private:
    void chooseFastThread();
    bool examine(const char* function);
    void report(const char* function);

    Notices& notices;
    const char* const simulatorThread = &threadMark;
    // The simulator's thread while nobody sees its calls, else null.
    const char* fastThread = simulatorThread;
    Watch watch;
    IPluginObserver* observer = nullptr;
};

} // namespace headless
