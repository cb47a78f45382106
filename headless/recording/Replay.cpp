#include "headless/recording/Replay.h"

#include <algorithm>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace headless {

namespace {

// Times in files are rounded.
constexpr double kRounding = 1e-6;

constexpr std::string_view kState[] = {
    "sim/flightmodel/position/latitude",  "sim/flightmodel/position/longitude",
    "sim/flightmodel/position/elevation", "sim/flightmodel/position/theta",
    "sim/flightmodel/position/phi",       "sim/flightmodel/position/psi"};

bool isState(const std::string& name) {
    return std::find(std::begin(kState), std::end(kState), name) != std::end(kState);
}

} // namespace

Replay::Replay(headless::Session& playedSession, Track playedTrack, double playedSpeed)
    : session(playedSession),
      track(std::move(playedTrack)),
      speed(playedSpeed),
      paused(playedSession.Simulator().Datarefs().Lookup("sim/time/paused")) {
    findTargets();
    beginFlight();
}

void Replay::findTargets() {
    std::size_t firstNumber = 0;
    for (const TrackColumn& column : track.columns) {
        try {
            if (!column.name.empty()) {
                targets.push_back({DatarefPlace(session.Simulator().Datarefs(), column.name),
                                   firstNumber, column.width});
                movesAircraft = movesAircraft || isState(column.name);
            }
        } catch (const std::invalid_argument& error) {
            missing.push_back(error.what() + std::string("; it is left out"));
        }
        firstNumber += column.width;
    }
}

void Replay::beginFlight() {
    if (!track.aircraft.empty()) {
        session.LoadAircraft(track.aircraft);
    }
    for (const TrackSetting& setting : track.settings) {
        try {
            DatarefPlace(session.Simulator().Datarefs(), setting.dataref).Parse(setting.value);
        } catch (const std::invalid_argument&) {
            // The world may lack this dataref.
        }
    }
    session.Model().SetResting(movesAircraft);
}

void Replay::BeforeFrame(double seconds) {
    if (isOver || paused.Get() != 0.0) {
        return;
    }
    while (row + 1 < track.rows.size() && track.rows[row + 1].seconds <= elapsed + kRounding) {
        ++row;
    }
    isLastFrame = row + 1 == track.rows.size();
    writeRow();
    if (movesAircraft) {
        session.Model().Follow();
        // Instrument values in the track take precedence.
        writeRow();
    }
    tellRemarks();
    elapsed += seconds * speed;
}

void Replay::AfterFrame() {
    if (isLastFrame && !isOver) {
        isOver = true;
        session.Model().SetResting(false);
    }
}

void Replay::writeRow() {
    const std::span<const double> numbers(track.rows[row].numbers);
    for (const Target& target : targets) {
        target.place.Write(numbers.subspan(target.firstNumber, target.width));
    }
}

void Replay::tellRemarks() {
    while (remarksTold < track.remarks.size() &&
           track.remarks[remarksTold].seconds <= elapsed + kRounding) {
        session.Simulator().Log().Write(
            "headless-sim: replay: " + track.remarks[remarksTold++].text + "\n");
    }
}

} // namespace headless
