#pragma once

#include <string>
#include <vector>

#include "headless/tracks/Track.h"

namespace headless {

struct TimeOfDay {
    double seconds = 0.0;
    // Whether seconds were given, not only hours and minutes.
    bool hasSeconds = false;
};

// HH:MM or HH:MM:SS. Throws std::invalid_argument for anything else.
TimeOfDay timeOfDayIn(const std::string& text);

// The time of a row that follows these rows; on the next day if midnight is in between. Throws
// std::invalid_argument if it is earlier than the last row.
double secondsAfter(const std::vector<TrackRow>& rows, double secondsOfDay);

// Spreads rows with the same time evenly until the next time, but over no more than `resolution`
// seconds.
void spreadRows(std::vector<TrackRow>& rows, double resolution);

} // namespace headless
