#include "headless/program/StatsReporter.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <iostream>
#include <system_error>

#include "headless/metering/StatsReport.h"

namespace headless {

namespace {

sigset_t reportSignal() {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGUSR1);
    return signals;
}

} // namespace

StatsReporter::StatsReporter(Simulator& simulator, const SessionOptions& sessionOptions)
    : options(sessionOptions), meter(simulator) {
    if (options.stats) {
        const sigset_t signals = reportSignal();
        descriptor = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
        if (descriptor < 0) {
            throw std::system_error(errno, std::generic_category(), "signalfd");
        }
        ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    }
    if (options.budgetMicroseconds.has_value()) {
        meter.SetFrameObserver([this](const PluginFigures& frame) { warn(frame); });
    }
}

StatsReporter::~StatsReporter() {
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

void StatsReporter::ReportIfAsked() {
    signalfd_siginfo signal{};
    if (descriptor >= 0 && ::read(descriptor, &signal, sizeof signal) == sizeof signal) {
        Report();
    }
}

void StatsReporter::Report() const {
    if (options.stats) {
        std::cout << (options.json ? statsAsJson(meter) + '\n' : statsAsText(meter)) << std::flush;
    }
}

void StatsReporter::warn(const PluginFigures& frame) const {
    const std::string text = overBudget(frame, *options.budgetMicroseconds);
    if (!text.empty()) {
        std::cerr << "headless-sim: warning: " << text << '\n';
    }
}

} // namespace headless
