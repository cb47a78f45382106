#pragma once

#include <string>

#include "headless/scenario/Flight.h"

namespace headless {

// Takes a line of text and returns one line of reply. Tests and users drive a session with it.
//
// The lines are scenario statements. Each has exactly one reply. If a statement cannot be carried
// out or an expectation is not met, the reply is "error: " and the reason. The reply to a comment
// is "ok". Borrows the flight.
class Console final {
public:
    explicit Console(Flight& drivenFlight) : flight(drivenFlight) {}

    std::string Execute(const std::string& line);

private:
    Flight& flight;
};

} // namespace headless
