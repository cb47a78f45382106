#pragma once

#include <chrono>
#include <string>

#include "tools/orvane/terminal/Terminal.h"

namespace orvane::tool {

// A progress line on standard error that is redrawn in place. Shows nothing if standard error is
// not a terminal.
class StatusLine final {
public:
    StatusLine();
    // Removes the line.
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    // Whether to show another text: at most ten times a second.
    bool IsDue() const;
    void Show(const std::string& text);
    void Clear();

private:
    Terminal terminal;
    std::chrono::steady_clock::time_point shownAt;
};

} // namespace orvane::tool
