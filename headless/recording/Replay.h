#pragma once

#include <string>
#include <vector>

#include "headless/host/DatarefPlace.h"
#include "headless/host/IFrameListener.h"
#include "headless/host/Session.h"
#include "headless/tracks/Track.h"

namespace headless {

// Plays a track into the simulator's datarefs: in each frame the row that is due, up to the last
// one. Time stands still while sim/time/paused is not 0.
//
// If the track has position or attitude, the flight model rests meanwhile, and values that follow
// from them (local coordinates, instruments) are set as well. Datarefs that do not exist are
// skipped.
class Replay final : public IFrameListener {
public:
    static constexpr double kSlowest = 0.01;
    static constexpr double kFastest = 1000.0;

    // Needs a session whose plugins have started, so that their datarefs exist. Loads the track's
    // aircraft. Borrows the session.
    Replay(headless::Session& playedSession, Track playedTrack, double playedSpeed);

    // Names of datarefs that do not exist.
    const std::vector<std::string>& Missing() const { return missing; }

    // Track time in seconds, not flight time: of the last row, and so far.
    double Length() const { return track.rows.back().seconds; }
    double Elapsed() const { return elapsed; }
    // The frame that played the last row is over.
    bool IsOver() const { return isOver; }

    void BeforeFrame(double seconds) override;
    void AfterFrame() override;

private:
    struct Target {
        DatarefPlace place;
        std::size_t firstNumber;
        std::size_t width;
    };

    void findTargets();
    void beginFlight();
    void writeRow();
    void tellRemarks();

    Session& session;
    Track track;
    double speed;
    DatarefNumber paused;
    std::vector<Target> targets;
    std::vector<std::string> missing;
    bool movesAircraft = false;
    double elapsed = 0.0;
    std::size_t row = 0;
    std::size_t remarksTold = 0;
    bool isLastFrame = false;
    bool isOver = false;
};

} // namespace headless
