#pragma once

#include <string>
#include <vector>

#include "headless/recording/Track.h"

namespace headless {

struct TimeOfDay {
    double seconds = 0.0;
    // Not only hours and minutes.
    bool hasSeconds = false;
};

// HH:MM or HH:MM:SS. Throws std::invalid_argument for anything else.
TimeOfDay timeOfDayIn(const std::string& text);

// The time of a row that comes after those: of the next day, if midnight is between them. Throws
// std::invalid_argument when it is earlier than the last one.
double secondsAfter(const std::vector<TrackRow>& rows, double secondsOfDay);

// Lets rows of the same time follow each other evenly until the next time, but for no longer than
// the times are exact.
void spreadRows(std::vector<TrackRow>& rows, double resolution);

} // namespace headless
