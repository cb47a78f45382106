#pragma once

#include <csignal>

namespace headless {

// Turns SIGINT and SIGTERM into a flag and a readable file descriptor for the object's life, so
// that a run ends in order. A second signal ends the process at once, because a plugin may hang.
// One at a time in a process.
class StopSignal final {
public:
    // Throws std::system_error if the system has no descriptor left.
    StopSignal();
    ~StopSignal();
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    // False if no such object exists.
    static bool Received();
    // Readable after a signal; for poll().
    int Descriptor() const { return descriptor; }

private:
    int descriptor;
    struct sigaction formerInterrupt {};
    struct sigaction formerTerminate {};
};

} // namespace headless
