#pragma once

#include <functional>

#include "headless/xplm/IPluginObserver.h"
#include "headless/xplm/Notices.h"

namespace headless {

// Its address differs in each thread, which makes checking the thread cheap. The library is never
// loaded late, so the mark has a fixed place.
extern constinit thread_local char threadMark __attribute__((tls_model("initial-exec")));

// Reports calls from threads other than the simulator's, each function of each caller once. The
// simulator's thread is the one that made the guard.
//
// While calls are observed, no thread is the fast one and every call takes the slow path. Calls
// that are not observed cost nothing extra.
class ThreadGuard final {
public:
    using Watch = std::function<void(const char* function)>;

    explicit ThreadGuard(Notices& simulatorNotices) : notices(simulatorNotices) {}
    ThreadGuard(const ThreadGuard&) = delete;
    ThreadGuard& operator=(const ThreadGuard&) = delete;

    // False for a call from another thread.
    bool Check(const char* function) { return fastThread == &threadMark || examine(function); }
    bool IsOnSimulatorThread() const { return simulatorThread == &threadMark; }

    // Called for every call on the simulator's thread; empty for none. Returns the previous watch.
    Watch SetWatch(Watch callWatch);

    // Called for every call on the simulator's thread; null for none. Borrowed.
    void Observe(IPluginObserver* pluginObserver);

private:
    void chooseFastThread();
    bool examine(const char* function);
    void report(const char* function);

    Notices& notices;
    const char* const simulatorThread = &threadMark;
    // The simulator's thread while its calls are not observed, else null.
    const char* fastThread = simulatorThread;
    Watch watch;
    IPluginObserver* observer = nullptr;
};

} // namespace headless
