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
    // `frameRunner` runs a frame: when it is due, or at once while the session is paused. If the
    // run is to end, it returns false without running a frame.
    Flight(headless::Session& flownSession, std::function<bool()> frameRunner)
        : session(flownSession), nextFrame(std::move(frameRunner)) {}

    headless::Session& Session() { return session; }

    // Returns false if the run is to end instead.
    bool RunFrame() {
        ended = ended || !nextFrame();
        return !ended;
    }
    // Runs frames for this many seconds of simulated time, or until `isDone` returns true. Calls
    // `isDone` before each frame and at the end.
    void RunFor(double seconds, const std::function<bool()>& isDone);

    // Whether a frame was not run because the run is to end.
    bool HasEnded() const { return ended; }

    // The exit status that a statement ended the run with.
    void Quit(int status) { quitStatus = status; }
    std::optional<int> QuitStatus() const { return quitStatus; }

private:
    headless::Session& session;
    std::function<bool()> nextFrame;
    bool ended = false;
    std::optional<int> quitStatus;
};

// An expectation was not met; what() is one line with the expected and the actual value.
class ExpectationFailed final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace headless
