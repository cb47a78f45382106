#pragma once

#include <mutex>
#include <set>
#include <string>

#include "headless/xplm/utilities/Log.h"

namespace headless {

// What the simulator has to say to a plugin's author, each thing once, in the log. Any thread may
// give a notice.
class Notices final {
public:
    explicit Notices(Log& simulatorLog) : log(simulatorLog) {}
    Notices(const Notices&) = delete;
    Notices& operator=(const Notices&) = delete;

    void Once(const std::string& text);

private:
    Log& log;
    std::mutex mutex;
    std::set<std::string> given;
};

} // namespace headless
