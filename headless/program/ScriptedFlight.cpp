#include "headless/program/ScriptedFlight.h"

#include <iostream>

#include "headless/scenario/ScenarioRun.h"

namespace headless {

ScriptedFlight::ScriptedFlight(const SessionOptions& options)
    : scenario(Scenario::Read(options.scriptFile)) {
    if (!options.junitFile.empty()) {
        report.emplace(options.junitFile);
    }
}

int ScriptedFlight::Fly(MainLoop& loop) {
    ScenarioRun run(scenario, std::cout, std::cerr);
    loop.Play([&](Flight& flight) { run.Play(flight); });
    if (report.has_value()) {
        report->Write(run);
    }
    return run.Status();
}

} // namespace headless
