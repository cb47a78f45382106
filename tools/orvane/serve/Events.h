#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "orvane/velmar/Value.h"
#include "tools/orvane/command/CommandEvents.h"
#include "tools/orvane/datarefs/DatarefArgument.h"

namespace orvane::tool {

// The events that a page gets, as server-sent events with JSON in them:
//
// - "series": {"series":[{"name":"test/ints[0]","unit":"","type":"int"}],"missing":["no/such"]}
// - no name, a reading, which is seconds and then pairs of a series and its new number:
//   [12.345,0,0.25,7,null]
// - "state": {"time":12.345,"state":"lost","text":"127.0.0.1:48000: ..."}
// - "command": {"time":12.345,"command":"sim/...","event":"down"}

enum class LiveState {
    Waiting,   // never connected
    Connected, // values arrive
    Lost,      // no values until it is connected again
    Aircraft,  // connected, and another aircraft was loaded
    Ended,     // a replay is over
};

// A dataref, and the place of its first number among the series of a page.
struct ShownDataref {
    DatarefArgument argument;
    std::size_t place = 0; // in the readings
    std::size_t firstSeries = 0;
    std::size_t count = 1;
};

std::string seriesEvent(const std::vector<ShownDataref>& shown,
                        const std::vector<std::string>& missing);
// Only the values that `isChanged` names, by their place.
std::string readingEvent(double seconds, const std::vector<ShownDataref>& shown,
                         const std::vector<velmar::Value>& values,
                         const std::vector<bool>& isChanged);
std::string stateEvent(double seconds, LiveState state, const std::string& text);
std::string commandEvent(double seconds, const CommandEvent& event);

// How many numbers a dataref of this type shows.
std::size_t countOf(const DatarefArgument& argument);

} // namespace orvane::tool
