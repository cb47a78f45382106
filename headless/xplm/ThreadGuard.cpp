#include "headless/xplm/ThreadGuard.h"

namespace headless {

constinit thread_local char threadMark = 0;

void ThreadGuard::report(const char* function) {
    notices.Once(std::string(function) +
                 " was called from another thread; the SDK belongs to the simulator's thread");
}

} // namespace headless
