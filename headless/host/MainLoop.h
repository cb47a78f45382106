#pragma once

#include <functional>
#include <utility>

#include "headless/host/Console.h"
#include "headless/host/FramePacer.h"
#include "headless/host/ILineSource.h"
#include "headless/host/Session.h"
#include "headless/host/StatsReporter.h"
#include "headless/host/StopSignal.h"
#include "headless/scenario/Flight.h"

namespace headless {

// Runs a session in real time until a signal, the end of its duration, or the console ends it.
//
// With a console, lines come from standard input and replies go to standard output between frames;
// while the session is paused nothing runs but what the console asks for. The end of the input ends
// the run.
//
// The plugin's clock is the wall clock; a frame that came late is longer. A run that begins paused
// has simulated time alone, in which all frames are equal.
class MainLoop final {
public:
    // Signals are handled from here on. Borrows all of them; the statistics may be null.
    MainLoop(Session& runSession, const SessionOptions& sessionOptions, ILineSource& consoleInput,
             StatsReporter* statsReporter = nullptr);

    // Returns the exit status: 0, unless the console says something else.
    int Run();
    // The run ends when that is so, too.
    void EndWhen(std::function<bool()> condition) { isDone = std::move(condition); }
    // Does this with the flight instead. Frames run when it asks for them.
    void Play(const std::function<void(Flight&)>& play);

private:
    void begin();
    void flyUntilOver();
    void reportIfAsked();
    bool runFrame();
    bool mustEnd() const;
    bool isOver() const;
    void answerConsole();
    // Sleeps until the console or a signal has something to say.
    void waitForInput() const;

    Session& session;
    const SessionOptions& options;
    StopSignal stopSignal;
    Flight flight;
    Console console;
    ILineSource& input;
    FramePacer pacer;
    StatsReporter* stats;
    std::function<bool()> isDone = [] { return false; };
};

} // namespace headless
