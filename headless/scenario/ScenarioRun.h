#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "headless/scenario/Flight.h"
#include "headless/scenario/Scenario.h"

namespace headless {

// The outcome of a scenario's line.
struct ScenarioOutcome {
    enum class Kind { Met, Failed, Error };

    const ScenarioLine* line = nullptr;
    Kind kind = Kind::Met;
    // What went wrong; empty if the line was met.
    std::string message;
    // How long it took.
    double seconds = 0.0;
};

// Carries out a scenario, from its first line to its last or to "quit".
//
// It continues after an expectation that is not met. It ends after a statement that cannot be
// carried out, or when the run is to end. Borrows the scenario.
class ScenarioRun final {
public:
    static constexpr int kFailedStatus = 3;

    // Replies with information go to `replies`, problems to `complaints`, one line each:
    // "headless-sim: FILE:LINE: ...".
    ScenarioRun(const Scenario& playedScenario, std::ostream& replies, std::ostream& complaints);

    void Play(Flight& flight);

    // kFailedStatus if anything went wrong, else the status given to "quit", else 0.
    int Status() const { return status; }

    // The lines that check something, and the line that could not be carried out.
    const std::vector<ScenarioOutcome>& Outcomes() const { return outcomes; }
    const headless::Scenario& Scenario() const { return scenario; }

private:
    // Returns false if the scenario ends with this line.
    bool play(const ScenarioLine& line, Flight& flight);
    void complain(ScenarioOutcome& outcome, ScenarioOutcome::Kind kind, const std::string& message);

    const headless::Scenario& scenario;
    std::ostream& replied;
    std::ostream& complained;
    std::vector<ScenarioOutcome> outcomes;
    int status = 0;
};

} // namespace headless
