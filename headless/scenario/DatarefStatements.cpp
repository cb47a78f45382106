#include <optional>
#include <sstream>
#include <string>

#include "headless/host/DatarefPlace.h"
#include "headless/scenario/Condition.h"
#include "headless/scenario/Statements.h"

namespace headless {

namespace {

DatarefPlace placeIn(Flight& flight, const std::string& name) {
    return {flight.Session().Simulator().Datarefs(), name};
}

// Checks the condition in every frame of that time.
void expectFor(const Condition& condition, double seconds, Flight& flight) {
    headless::Simulator& simulator = flight.Session().Simulator();
    const double begin = simulator.Clock().Now();
    std::optional<std::string> otherwise;
    flight.RunFor(seconds, [&] {
        otherwise = condition.Otherwise(simulator.Datarefs());
        return otherwise.has_value();
    });
    if (!otherwise.has_value()) {
        return;
    }
    std::ostringstream failure;
    failure << "expected " << condition.Text();
    if (seconds > 0.0) {
        failure << " for " << seconds << " s";
    }
    failure << ", got " << *otherwise;
    if (seconds > 0.0) {
        failure << " after " << simulator.Clock().Now() - begin << " s";
    }
    throw ExpectationFailed(failure.str());
}

} // namespace

Statement readGet(Arguments& arguments) {
    // Names of plugins' datarefs may contain blanks.
    const std::string name = arguments.Rest("the dataref");
    return reporting(arguments, [name](Flight& flight) {
        return name + " = " + placeIn(flight, name).Format();
    });
}

Statement readSet(Arguments& arguments) {
    const std::string name = arguments.Word("the dataref");
    const std::string value = arguments.RestOrNothing();
    return acting(arguments, [name, value](Flight& flight) { placeIn(flight, name).Parse(value); });
}

Statement readExpect(Arguments& arguments) {
    const Condition condition(arguments);
    const double seconds = arguments.Take("for") ? arguments.TakeSeconds() : 0.0;
    return checking(
        arguments, [condition, seconds](Flight& flight) { expectFor(condition, seconds, flight); });
}

} // namespace headless
