#pragma once

#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "headless/xplm/utilities/Log.h"

namespace headless {

// What the simulator reports to a plugin's author, each text once, in the log. Can be used from any
// thread.
class Notices final {
public:
    explicit Notices(Log& simulatorLog) : log(simulatorLog) {}
    Notices(const Notices&) = delete;
    Notices& operator=(const Notices&) = delete;

    void Once(const std::string& text);
    // For something that is not a fault.
    void Note(const std::string& text) { Once("note: " + text); }
    // A breach of the SDK's rules.
    void Warn(const std::string& text);

    // Oldest first.
    std::vector<std::string> Warnings() const;

private:
    // False if it was given before.
    bool give(const std::string& text);

    Log& log;
    mutable std::mutex mutex;
    std::set<std::string> given;
    std::vector<std::string> warnings;
};

} // namespace headless
