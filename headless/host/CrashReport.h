#pragma once

#include <array>
#include <csignal>

#include "headless/xplm/Simulator.h"

namespace headless {

// When a plugin crashes by SIGSEGV, SIGBUS, SIGILL, SIGFPE or SIGABRT, says on standard error which
// plugin, in which callback and where. The process then exits with kExitStatus. If the last line of
// the log shows what to do, the report says that instead. A plugin that calls exit() is named, too.
//
// Create it on the simulator's thread. One at a time in a process; borrows the simulator.
class CrashReport final {
public:
    static constexpr int kExitStatus = 5;
    static constexpr std::array kSignals{SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};

    explicit CrashReport(Simulator& reportedSimulator);
    ~CrashReport();
    CrashReport(const CrashReport&) = delete;
    CrashReport& operator=(const CrashReport&) = delete;

    // Ends the process with "headless-sim: PLUGIN: the plugin WHAT CALLBACK; backtrace:" and a
    // backtrace. For signal handlers.
    [[noreturn]] static void End(Simulator& simulator, const char* what);

private:
    std::array<struct sigaction, kSignals.size()> former{};
    stack_t formerStack{};
};

} // namespace headless
