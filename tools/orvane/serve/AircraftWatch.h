#pragma once

#include <stop_token>

namespace orvane::tool {

struct GlobalOptions;
class Hub;

// Asks once a second which aircraft is loaded, on a connection of its own, and tells the hub when
// it is another one. Silent about its own connection. Returns when it is told to stop.
void watchAircraft(const std::stop_token& end, const GlobalOptions& globals, Hub& hub);

} // namespace orvane::tool
