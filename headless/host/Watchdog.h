#pragma once

#include <ctime>

#include "headless/xplm/Simulator.h"

namespace headless {

// Ends the process if a plugin does not return from a callback. Says on standard error which plugin
// and callback, prints a backtrace, and exits as after a crash. Watches the thread that created it.
// One at a time in a process; borrows the simulator.
class Watchdog final {
public:
    // Ends the process if a callback takes `seconds`, or up to a quarter more. Throws
    // std::system_error if the system has no timer left.
    Watchdog(Simulator& watchedSimulator, double seconds);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    timer_t timer{};
};

} // namespace headless
