#pragma once

#include <string>

#include "headless/host/SessionOptions.h"
#include "headless/metering/Meter.h"

namespace headless {

// Measures a run and reports on it: statistics on standard output when it ends and at every
// SIGUSR1, and on standard error each frame of a plugin that is over its budget, as the options
// say.
//
// To be made before any plugin is loaded, since the signal is blocked in all threads made later.
class StatsReporter final {
public:
    // Throws std::system_error when the system has no descriptor left.
    StatsReporter(Simulator& simulator, const SessionOptions& sessionOptions);
    ~StatsReporter();
    StatsReporter(const StatsReporter&) = delete;
    StatsReporter& operator=(const StatsReporter&) = delete;

    // Readable when a report was asked for; for poll().
    int Descriptor() const { return descriptor; }
    void ReportIfAsked();
    void Report() const;

private:
    void warn(const PluginFigures& frame) const;

    const SessionOptions& options;
    Meter meter;
    int descriptor = -1;
};

} // namespace headless
