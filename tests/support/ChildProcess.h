#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

// A child process, which is gone after the destructor. Throws std::system_error if it cannot be
// made.
class ChildProcess final {
public:
    struct Setting {
        // Descriptors for the child's standard input, output and error, which the caller closes
        // afterwards; without one the child shares the test's.
        std::optional<int> input{};
        std::optional<int> output{};
        std::optional<int> errors{};
        // Instead of the test's own.
        std::optional<std::vector<std::string>> environment{};
        // In its own process group, as a shell does it.
        bool hasOwnGroup = false;
    };

    // Runs a program, which is the first of the arguments. SIGPIPE and SIGHUP end it, even if
    // the test ignores them.
    ChildProcess(std::vector<std::string> arguments, const Setting& setting);
    // Forks; the child does this and ends with status 0.
    explicit ChildProcess(const std::function<void()>& work);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    pid_t Pid() const { return pid; }
    // Throws if it has ended: the number may belong to another process by then.
    void Signal(int signal) const;

    bool HasEnded();
    // Whether a signal has stopped it. Throws when it has ended.
    bool HasStopped();
    // Waits, with a deadline, and returns the wait status.
    int WaitForEnd();
    // As in a shell: 128 plus the signal, if one ended it.
    int ExitCode() const;

private:
    pid_t pid = -1;
    int status = 0;
    bool ended = false;
};

// A pipe: the test's end, and the child's.
struct Channel {
    int ours = -1;
    int theirs = -1;
};

// Both ends close by themselves in a program that is run.
Channel pipeFromChild();
Channel pipeToChild();
