#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "support/ChildProcess.h"

// What the user of a tool gets.
struct ToolResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

struct ToolSetting {
    // Standard output is a terminal of 100 columns and 24 rows instead of a pipe. The tool then has
    // a process group of its own, as a shell gives it, so that it can be stopped.
    bool hasTerminal = false;
    // The same for standard error.
    bool hasErrTerminal = false;
    // Standard output is a file on a disk that is full.
    bool hasFullDisk = false;
    // The whole standard input.
    std::string input{};
    // Replaces or is added to the test's own environment, without its TERM, NO_COLOR and locale.
    std::vector<std::string> environment{};
    // Instead of `orvane`.
    std::string program{};
};

// A run of the real `orvane`, or of another program.
//
// Nothing hangs: waiting throws after a deadline, and the process is gone after the destructor.
class ToolRun final {
public:
    explicit ToolRun(std::vector<std::string> arguments, const ToolSetting& setting = {});
    ~ToolRun();
    ToolRun(const ToolRun&) = delete;
    ToolRun& operator=(const ToolRun&) = delete;

    // Waits until the tool has printed this; `step`, if there is one, is called meanwhile.
    void WaitForOut(const std::string& text, const std::function<void()>& step = {});
    // The same after the first `from` bytes.
    void WaitForOut(const std::string& text, std::size_t from);
    void WaitForErr(const std::string& text, const std::function<void()>& step = {});
    // Waits for its end.
    ToolResult Wait(const std::function<void()>& step = {});

    void Signal(int signal) const { process->Signal(signal); }
    // Waits until a signal has stopped it.
    void WaitUntilStopped();
    // Types keys at the terminal of standard output.
    void Type(const std::string& keys) const;
    // Whether that terminal shows what is typed.
    bool HasEcho() const;
    // Closes the reader of standard output.
    void CloseOut();

    // Printed so far.
    const std::string& Out() const { return out; }
    const std::string& Err() const { return err; }

private:
    void waitUntil(const std::function<bool()>& condition, const std::function<void()>& step,
                   const std::string& what);
    void receive(int timeoutMs);

    std::unique_ptr<ChildProcess> process;
    int outEnd = -1;
    int errEnd = -1;
    std::string out;
    std::string err;
};

// Runs to the end.
ToolResult runTool(std::vector<std::string> arguments, const ToolSetting& setting = {});
