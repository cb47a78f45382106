#include "headless/scenario/ScenarioRun.h"

#include <chrono>
#include <exception>

namespace headless {

namespace {

double secondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

ScenarioRun::ScenarioRun(const headless::Scenario& playedScenario, std::ostream& replies,
                         std::ostream& complaints)
    : scenario(playedScenario), replied(replies), complained(complaints) {}

void ScenarioRun::Play(Flight& flight) {
    for (const ScenarioLine& line : scenario.lines) {
        if (!play(line, flight) || flight.QuitStatus().has_value()) {
            break;
        }
    }
    if (status == 0) {
        status = flight.QuitStatus().value_or(0);
    }
}

bool ScenarioRun::play(const ScenarioLine& line, Flight& flight) {
    using Kind = ScenarioOutcome::Kind;
    const auto begin = std::chrono::steady_clock::now();
    ScenarioOutcome outcome{&line, Kind::Met, {}, 0.0};
    try {
        const std::string reply = line.statement.execute(flight);
        if (line.statement.purpose == Statement::Purpose::Report) {
            replied << reply << std::endl;
        }
        if (flight.HasEnded()) {
            complain(outcome, Kind::Error, "the run ended before the scenario did");
        }
    } catch (const ExpectationFailed& failure) {
        complain(outcome, Kind::Failed, failure.what());
    } catch (const std::exception& error) {
        complain(outcome, Kind::Error, error.what());
    }
    outcome.seconds = secondsSince(begin);
    const bool goesOn = outcome.kind != Kind::Error;
    if (!goesOn || line.statement.purpose == Statement::Purpose::Check) {
        outcomes.push_back(std::move(outcome));
    }
    return goesOn;
}

void ScenarioRun::complain(ScenarioOutcome& outcome, ScenarioOutcome::Kind kind,
                           const std::string& message) {
    outcome.kind = kind;
    outcome.message = message;
    status = kFailedStatus;
    complained << "headless-sim: " << scenario.name << ':' << outcome.line->number << ": "
               << message << std::endl;
}

} // namespace headless
