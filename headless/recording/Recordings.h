#pragma once

#include <optional>

#include "headless/host/Session.h"
#include "headless/host/SessionOptions.h"
#include "headless/recording/Recorder.h"
#include "headless/recording/Replay.h"
#include "headless/recording/ReplayProgress.h"

namespace headless {

// What a run replays and records, if anything.
class Recordings final {
public:
    // Reads the replay before anything flies. Throws TextFileError, with one line, if it cannot be
    // read. Reports skipped parts on standard error.
    explicit Recordings(const SessionOptions& recordingOptions);

    // Takes part in the session's frames from now on; the plugins must have started. Throws
    // std::exception, with one line, if something cannot be recorded.
    void Begin(Session& session);

    // Call this after the last frame. Removes the progress from the terminal.
    void Finish() { progress.reset(); }

    // True if there was a replay and it is over.
    bool IsReplayOver() const { return replay.has_value() && replay->IsOver(); }

private:
    const SessionOptions& options;
    std::optional<Track> track;
    std::optional<Replay> replay;
    std::optional<ReplayProgress> progress;
    std::optional<Recorder> recorder;
};

} // namespace headless
