#pragma once

#include "headless/host/SessionOptions.h"
#include "headless/metering/Meter.h"

namespace headless {

// Measures a run and reports on it as the options say: statistics on standard output at the end and
// at every SIGUSR1, and on standard error each frame in which a plugin exceeds its budget.
//
// Create it before any plugin is loaded: it blocks the signal in all threads started later.
class StatsReporter final {
public:
    // Throws std::system_error if the system has no descriptor left.
    StatsReporter(Simulator& simulator, const SessionOptions& sessionOptions);
    ~StatsReporter();
    StatsReporter(const StatsReporter&) = delete;
    StatsReporter& operator=(const StatsReporter&) = delete;

    // Readable when a report was requested; for poll().
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
