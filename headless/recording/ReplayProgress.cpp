#include "headless/recording/ReplayProgress.h"

#include <unistd.h>

#include <cstdio>

namespace headless {

namespace {

constexpr std::chrono::milliseconds kOnTerminal(100);
constexpr std::chrono::seconds kElsewhere(10);
constexpr const char* kEraseLine = "\r\033[K";

} // namespace

ReplayProgress::ReplayProgress(const Replay& shownReplay)
    : replay(shownReplay),
      isTerminal(::isatty(STDERR_FILENO) == 1),
      next(isTerminal ? Clock::now() : Clock::now() + kElsewhere) {}

ReplayProgress::~ReplayProgress() {
    if (isShown && isTerminal) {
        std::fputs(kEraseLine, stderr);
        std::fflush(stderr);
    }
}

void ReplayProgress::AfterFrame() {
    if (replay.IsOver() || Clock::now() < next) {
        return;
    }
    const double elapsed = std::min(replay.Elapsed(), replay.Length());
    std::fprintf(stderr, "%sheadless-sim: replay %.1f of %.1f s%s", isTerminal ? kEraseLine : "",
                 elapsed, replay.Length(), isTerminal ? "" : "\n");
    std::fflush(stderr);
    isShown = true;
    next = Clock::now() + (isTerminal ? std::chrono::milliseconds(kOnTerminal) : kElsewhere);
}

} // namespace headless
