#pragma once

#include <ctime>

#include "headless/xplm/Simulator.h"

namespace headless {

// Ends the process when a plugin does not come back from a callback: says on standard error which
// plugin and callback, shows where it is, and exits as after a crash. Watches the thread that made
// it. One at a time in a process; borrows the simulator.
class Watchdog final {
public:
    // Ends a callback that takes `seconds` or up to a quarter more. Throws std::system_error when
    // the system has no timer left.
    Watchdog(Simulator& watchedSimulator, double seconds);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    timer_t timer{};
};

} // namespace headless
