#pragma once

#include <optional>

#include "headless/host/SessionOptions.h"
#include "headless/program/MainLoop.h"
#include "headless/scenario/JunitReport.h"
#include "headless/scenario/Scenario.h"

namespace headless {

// A flight by a script, with a report if one was requested.
class ScriptedFlight final {
public:
    // Reads the script and opens the report before anything flies. Throws TextFileError or
    // std::runtime_error, each with one line.
    explicit ScriptedFlight(const SessionOptions& options);

    // Returns the exit status. Replies go to standard output, problems to standard error.
    int Fly(MainLoop& loop);

private:
    Scenario scenario;
    std::optional<JunitReport> report;
};

} // namespace headless
