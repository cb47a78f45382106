#pragma once

#include <chrono>

#include "headless/host/IFrameListener.h"
#include "headless/recording/Replay.h"

namespace headless {

// Says on standard error how far a replay has come: on a terminal ten times a second in the same
// line, elsewhere every ten seconds in one of its own.
class ReplayProgress final : public IFrameListener {
public:
    explicit ReplayProgress(const Replay& shownReplay);
    // Takes the line off the terminal.
    ~ReplayProgress() override;

    void BeforeFrame(double /*seconds*/) override {}
    void AfterFrame() override;

private:
    using Clock = std::chrono::steady_clock;

    const Replay& replay;
    bool isTerminal;
    bool isShown = false;
    Clock::time_point next;
};

} // namespace headless
