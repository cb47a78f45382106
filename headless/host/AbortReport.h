#pragma once

#include <csignal>
#include <string>

#include "headless/xplm/utilities/Log.h"

namespace headless {

// Says on standard error why the process ends when a plugin aborts it: the plugin, its last line in
// the log and, where the line is known, what to do. The process still ends by SIGABRT. One at a
// time in a process; borrows the log.
class AbortReport final {
public:
    AbortReport(const Log& simulatorLog, const std::string& pluginFile);
    ~AbortReport();
    AbortReport(const AbortReport&) = delete;
    AbortReport& operator=(const AbortReport&) = delete;

private:
    struct sigaction former {};
};

} // namespace headless
