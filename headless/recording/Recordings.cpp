#include "headless/recording/Recordings.h"

#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace headless {

namespace {

void warn(const std::vector<std::string>& warnings, const std::string& before) {
    for (const std::string& warning : warnings) {
        std::cerr << "headless-sim: warning: " << before << warning << '\n';
    }
}

} // namespace

Recordings::Recordings(const SessionOptions& recordingOptions) : options(recordingOptions) {
    if (!options.replayFile.empty()) {
        track = readTrack(options.replayFile, 1.0 / options.framesPerSecond);
        warn(track->warnings, "");
        warn(track->unknown, "");
    }
}

void Recordings::Begin(Session& session) {
    if (track.has_value()) {
        replay.emplace(session, std::move(*track), options.replaySpeed);
        warn(replay->Missing(), options.replayFile + ": ");
        session.AddListener(*replay);
        // A console needs the terminal for itself.
        if (!options.console) {
            session.AddListener(progress.emplace(*replay));
        }
    }
    if (!options.record.empty()) {
        const std::vector<std::string> names(options.record.begin() + 1, options.record.end());
        session.AddListener(recorder.emplace(session.Simulator(), options.record.front(), names));
    }
}

} // namespace headless
