#pragma once

#include <chrono>

#include "headless/host/IFrameListener.h"
#include "headless/recording/Replay.h"

namespace headless {

// Shows a replay's progress on standard error: on a terminal ten times a second in the same line,
// elsewhere a new line every ten seconds.
class ReplayProgress final : public IFrameListener {
public:
    explicit ReplayProgress(const Replay& shownReplay);
    // Clears the line on the terminal.
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
