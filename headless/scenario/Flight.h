#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <utility>

#include "headless/host/Session.h"

namespace headless {

// What statements act on. Borrows the session.
class Flight final {
public:
    // `frameRunner` runs a frame: at its time, or at once while the session is paused. It returns
    // false, and has run none, when the run is to end instead.
    Flight(headless::Session& flownSession, std::function<bool()> frameRunner)
        : session(flownSession), nextFrame(std::move(frameRunner)) {}

    headless::Session& Session() { return session; }

    // False when the run is to end instead.
    bool RunFrame() {
        ended = ended || !nextFrame();
        return !ended;
    }
    // Frames of so many seconds of simulated time, but no more once it is done. `isDone` is asked
    // before each of them and at the end.
    void RunFor(double seconds, const std::function<bool()>& isDone);

    // Whether a frame was not run because the run is to end.
    bool HasEnded() const { return ended; }

    // What a statement ended the run with.
    void Quit(int status) { quitStatus = status; }
    std::optional<int> QuitStatus() const { return quitStatus; }

private:
    headless::Session& session;
    std::function<bool()> nextFrame;
    bool ended = false;
    std::optional<int> quitStatus;
};

// What was expected and what was found; what() is one line.
class ExpectationFailed final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace headless
