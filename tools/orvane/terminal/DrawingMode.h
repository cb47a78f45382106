#pragma once

#include <string>

namespace orvane::tool {

// Makes the terminal of standard output fit for a drawing that changes in place: the cursor is
// hidden, and typed keys show nothing and are dropped. The terminal is given back by the
// destructor, before a signal that nobody catches ends the process, and while Ctrl-Z has stopped
// it; `fg` then takes the terminal again and shows the drawing anew. In the background the terminal
// belongs to somebody else and keeps its cursor and its keys.
//
// There is one at a time. Signals are handled on the thread that draws, which is the only one.
class DrawingMode final {
public:
    DrawingMode();
    ~DrawingMode();
    DrawingMode(const DrawingMode&) = delete;
    DrawingMode& operator=(const DrawingMode&) = delete;

    // Writes `change`, which makes the terminal show `drawing`: the drawing that is shown anew
    // after a stop. Nothing can stop the process in between.
    void Show(const std::string& change, std::string drawing);
};

} // namespace orvane::tool
