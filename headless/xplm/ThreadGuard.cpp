#include "headless/xplm/ThreadGuard.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <array>
#include <string>
#include <utility>

namespace headless {

constinit thread_local char threadMark = 0;

namespace {

// The library or program that called into this one.
std::string callersFile() {
    std::array<void*, 16> frames{};
    const int depth = ::backtrace(frames.data(), static_cast<int>(frames.size()));
    Dl_info own{};
    ::dladdr(reinterpret_cast<const void*>(&callersFile), &own);
    // A sanitizer's backtrace() may come first.
    bool isPastOwn = false;
    for (int i = 0; i < depth; ++i) {
        Dl_info place{};
        if (::dladdr(frames[static_cast<std::size_t>(i)], &place) == 0) {
            continue;
        }
        const bool isOwn = place.dli_fbase == own.dli_fbase;
        if (isPastOwn && !isOwn) {
            return place.dli_fname;
        }
        isPastOwn = isPastOwn || isOwn;
    }
    return "a plugin";
}

} // namespace

ThreadGuard::Watch ThreadGuard::SetWatch(Watch callWatch) {
    Watch former = std::exchange(watch, std::move(callWatch));
    chooseFastThread();
    return former;
}

void ThreadGuard::Observe(IPluginObserver* pluginObserver) {
    observer = pluginObserver;
    chooseFastThread();
}

void ThreadGuard::chooseFastThread() {
    fastThread = watch || observer != nullptr ? nullptr : simulatorThread;
}

bool ThreadGuard::examine(const char* function) {
    if (!IsOnSimulatorThread()) {
        report(function);
        return false;
    }
    if (observer != nullptr) {
        observer->Called(function);
    }
    if (watch) {
        watch(function);
    }
    return true;
}

void ThreadGuard::report(const char* function) {
    // A thread belongs to one plugin.
    thread_local const std::string caller = callersFile();
    notices.Warn(caller + ": " + function +
                 " was called from another thread; the SDK belongs to the simulator's thread");
}

} // namespace headless
