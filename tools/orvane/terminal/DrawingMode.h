#pragma once

#include <string>

namespace orvane::tool {

// Prepares the terminal of standard output for a drawing that changes in place: hides the cursor,
// and drops typed keys without an echo. The destructor restores the terminal; so do a signal that
// ends the process and a stop with Ctrl-Z, after which `fg` takes the terminal again and redraws.
// In the background the terminal is left alone.
//
// At most one exists at a time. Signals are handled on the only thread, which draws.
class DrawingMode final {
public:
    DrawingMode();
    ~DrawingMode();
    DrawingMode(const DrawingMode&) = delete;
    DrawingMode& operator=(const DrawingMode&) = delete;

    // Writes `change`, after which the terminal shows `drawing`, and redraws that after a stop. A
    // stop cannot come in between.
    void Show(const std::string& change, std::string drawing);
};

} // namespace orvane::tool
