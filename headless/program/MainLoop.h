#pragma once

#include <functional>
#include <utility>

#include "headless/host/ILineSource.h"
#include "headless/host/Session.h"
#include "headless/host/StopSignal.h"
#include "headless/program/FramePacer.h"
#include "headless/program/StatsReporter.h"
#include "headless/scenario/Flight.h"

namespace headless {

// Runs a session in real time until a signal arrives, its duration is over, or the console ends it.
//
// With a console, it reads lines from standard input and writes replies to standard output between
// frames. While the session is paused, only frames that the console asks for run. The end of the
// input ends the run.
//
// The plugin's clock is the wall clock; a late frame is longer. A run that begins paused has only
// simulated time, in which all frames have the same length.
class MainLoop final {
public:
    // Signals are handled from here on. Borrows all arguments; the statistics may be null.
    MainLoop(Session& runSession, const SessionOptions& sessionOptions, ILineSource& consoleInput,
             StatsReporter* statsReporter = nullptr);

    // Returns the exit status: 0, unless the console gives another one.
    int Run();
    // Also ends the run when the condition holds.
    void EndWhen(std::function<bool()> condition) { isDone = std::move(condition); }
    // Runs this with the flight instead. Frames run when it asks for them.
    void Play(const std::function<void(Flight&)>& play);

private:
    void begin();
    void flyUntilOver();
    void reportIfAsked();
    bool runFrame();
    bool mustEnd() const;
    bool isOver() const;
    void answerConsole();
    // Sleeps until there is console input or a signal.
    void waitForInput() const;

    Session& session;
    const SessionOptions& options;
    StopSignal stopSignal;
    Flight flight;
    ILineSource& input;
    FramePacer pacer;
    StatsReporter* stats;
    std::function<bool()> isDone = [] { return false; };
};

} // namespace headless
