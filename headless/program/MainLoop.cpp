#include "headless/program/MainLoop.h"

#include <poll.h>

#include <array>
#include <iostream>

#include "headless/scenario/Statement.h"

namespace headless {

MainLoop::MainLoop(Session& runSession, const SessionOptions& sessionOptions,
                   ILineSource& consoleInput, StatsReporter* statsReporter)
    : session(runSession),
      options(sessionOptions),
      flight(runSession, [this] { return runFrame(); }),
      input(consoleInput),
      pacer(sessionOptions.framesPerSecond),
      stats(statsReporter) {}

int MainLoop::Run() {
    begin();
    flyUntilOver();
    input.Close();
    return flight.QuitStatus().value_or(0);
}

void MainLoop::Play(const std::function<void(Flight&)>& play) {
    begin();
    play(flight);
}

void MainLoop::flyUntilOver() {
    while (!isOver()) {
        reportIfAsked();
        if (options.console) {
            answerConsole();
        }
        if (isOver()) {
            return;
        }
        if (session.IsPaused()) {
            waitForInput();
            pacer.Restart();
            continue;
        }
        runFrame();
    }
}

void MainLoop::begin() {
    session.Simulator().Clock().SetRealTime(!options.paused);
    pacer.Restart();
}

void MainLoop::reportIfAsked() {
    if (stats != nullptr) {
        stats->ReportIfAsked();
    }
}

bool MainLoop::runFrame() {
    reportIfAsked();
    if (mustEnd()) {
        return false;
    }
    if (session.IsPaused()) {
        session.RunFrame();
        pacer.Restart();
        return true;
    }
    pacer.SetRate(session.FramesPerSecond());
    const double passed = pacer.WaitForNextFrame();
    if (stopSignal.Received()) {
        return false;
    }
    if (options.paused) {
        session.RunFrame();
    } else {
        session.RunFrame(passed);
    }
    return true;
}

bool MainLoop::mustEnd() const {
    const bool arrived =
        options.durationSeconds.has_value() && session.FlownSeconds() >= *options.durationSeconds;
    return stopSignal.Received() || arrived || isDone();
}

bool MainLoop::isOver() const {
    const bool consoleClosed =
        options.console && (flight.QuitStatus().has_value() || input.AtEnd());
    return mustEnd() || consoleClosed;
}

void MainLoop::answerConsole() {
    input.Fill();
    while (!flight.QuitStatus().has_value()) {
        const auto line = input.Next();
        if (!line.has_value()) {
            return;
        }
        std::cout << replyTo(*line, flight) << std::endl;
    }
}

void MainLoop::waitForInput() const {
    std::array<pollfd, 3> waited{
        {{stopSignal.Descriptor(), POLLIN, 0}, {-1, POLLIN, 0}, {-1, POLLIN, 0}}};
    // Without a console only a signal can end the pause.
    waited[1].fd = options.console ? input.Descriptor() : -1;
    waited[2].fd = stats != nullptr ? stats->Descriptor() : -1;
    ::poll(waited.data(), waited.size(), -1);
}

} // namespace headless
