#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "support/ChildProcess.h"

// A real headless-sim process with the real plugin in it, driven frame by frame.
//
// Time stands still until Step: a test decides in which frame the plugin sees what. Everything that
// waits gives up after a deadline with an exception, so that a test never hangs. The process runs
// in the working directory of the caller, and is gone after the destructor.
class SimulatorProcess final {
public:
    // Returns once the plugin has started; throws when the simulator ends instead.
    explicit SimulatorProcess(std::vector<std::string> extraArguments = {});
    // Returns at once: for a start that should fail.
    static std::unique_ptr<SimulatorProcess> StartOnly();
    ~SimulatorProcess();
    SimulatorProcess(const SimulatorProcess&) = delete;
    SimulatorProcess& operator=(const SimulatorProcess&) = delete;

    // One console command and its reply line. Throws when the simulator ends instead.
    std::string Ask(const std::string& command);
    void Step(int frames = 1);
    // The number in the reply to `rss` (kilobytes), `fds`, `handlers`, `frames` or `worst`
    // (microseconds).
    long AskNumber(const std::string& command);
    // The value part of a `get`.
    std::string Get(const std::string& dataref);

    // Sends a command without waiting for a reply: the simulator may end.
    void Send(const std::string& command);

    // Ends the simulator as its user would and returns its wait status.
    int Quit();
    // Waits for the simulator to end and returns the wait status.
    int WaitForEnd();

    // All that the simulator printed except replies; complete after its end.
    const std::string& Output() const { return output; }
    // The simulator's log file without the lines of the simulator itself.
    std::string LogText() const;
    std::vector<std::string> LogLines() const;
    // The last line without the plugin's name and the time stamp.
    std::string LastLogMessage() const;

    pid_t Pid() const { return process->Pid(); }

private:
    struct WithoutWaiting {};
    explicit SimulatorProcess(WithoutWaiting);

    void spawn(std::vector<std::string> extraArguments);
    bool readMore();
    std::string takeLine();

    std::filesystem::path workingDirectory;
    std::unique_ptr<ChildProcess> process;
    int input = -1;
    int outputPipe = -1;
    std::string unread;
    std::string output;
};

// The message of a log line, after the plugin's name, the date and the time.
std::string messageOf(const std::string& logLine);
