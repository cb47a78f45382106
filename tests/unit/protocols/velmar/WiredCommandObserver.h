#pragma once

#include "commands/CommandObserver.h"

// The real observer, which the simulator reaches through a plain function as in the plugin. One at
// a time.
class WiredCommandObserver final {
public:
    WiredCommandObserver() { current = &observer; }
    ~WiredCommandObserver() { current = nullptr; }
    WiredCommandObserver(const WiredCommandObserver&) = delete;
    WiredCommandObserver& operator=(const WiredCommandObserver&) = delete;

    CommandObserver* Get() { return &observer; }

private:
    static int forward(void* command, int phase, void* refcon) {
        return current->HandleCommand(command, phase, refcon);
    }

    static inline CommandObserver* current = nullptr;
    CommandObserver observer{&forward};
};
