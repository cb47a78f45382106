#pragma once

#include <chrono>
#include <string>

#include "tools/orvane/terminal/Terminal.h"

namespace orvane::tool {

// A line on standard error that shows how something goes, and is redrawn in place. Nothing at all
// where standard error is not a terminal.
class StatusLine final {
public:
    StatusLine();
    // Takes the line away.
    ~StatusLine();
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    // Whether it is time for another text: at most ten times a second.
    bool IsDue() const;
    void Show(const std::string& text);
    void Clear();

private:
    Terminal terminal;
    std::chrono::steady_clock::time_point shownAt;
};

} // namespace orvane::tool
