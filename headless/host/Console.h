#pragma once

#include <string>

#include "headless/scenario/Flight.h"

namespace headless {

// A line of text in, one line of reply out: how tests and curious people drive a session.
//
// The lines are the statements of scenarios. Every one has exactly one reply; one that cannot be
// carried out, and an expectation that is not met, has "error: " and the reason. A comment is
// answered with "ok". Borrows the flight.
class Console final {
public:
    explicit Console(Flight& drivenFlight) : flight(drivenFlight) {}

    std::string Execute(const std::string& line);

private:
    Flight& flight;
};

} // namespace headless
