#include "headless/host/MainLoop.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <iostream>

namespace headless {

MainLoop::MainLoop(Session& runSession, const SessionOptions& sessionOptions)
    : session(runSession),
      options(sessionOptions),
      console(runSession, [this] { return stopSignal.Received(); }),
      input(STDIN_FILENO),
      pacer(sessionOptions.framesPerSecond) {}

void MainLoop::Run() {
    session.Simulator().Clock().SetRealTime(!options.paused);
    pacer.Restart();
    while (!isOver()) {
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
        const double passed = pacer.WaitForNextFrame();
        if (stopSignal.Received()) {
            return;
        }
        if (options.paused) {
            session.RunFrame();
        } else {
            session.RunFrame(passed);
        }
    }
}

bool MainLoop::isOver() const {
    const double flown = static_cast<double>(session.Statistics().Frames());
    const bool arrived = options.durationSeconds.has_value() &&
                         flown >= *options.durationSeconds * options.framesPerSecond;
    const bool consoleClosed = options.console && (console.QuitRequested() || input.AtEnd());
    return stopSignal.Received() || arrived || consoleClosed;
}

void MainLoop::answerConsole() {
    input.Fill();
    while (!console.QuitRequested()) {
        const auto line = input.Next();
        if (!line.has_value()) {
            return;
        }
        std::cout << console.Execute(*line) << std::endl;
    }
}

void MainLoop::waitForInput() const {
    std::array<pollfd, 2> waited{{{stopSignal.Descriptor(), POLLIN, 0}, {-1, POLLIN, 0}}};
    // Without a console nothing but a signal can end the pause.
    waited[1].fd = options.console ? input.Descriptor() : -1;
    ::poll(waited.data(), waited.size(), -1);
}

} // namespace headless
