#pragma once

#include <string>

#include "headless/recording/Track.h"

namespace headless {

// Reads the text of a flight data recorder's file, version 4.
//
// Line 1 is A or I, line 2 begins with 4. Then keywords, and rows: Zulu time, longitude, latitude,
// feet, heading, pitch and roll in degrees, and a column for each DREF. Commas, tabs and blanks
// separate fields. Times without seconds, and rows of the same second, are spread over the minute
// or the second.
//
// Of the keywords, ACFT, TAIL, TIME, PRES, TEMP, DISA and WIND become settings, and TEXT, WARN,
// MARK and EVNT remarks; COMM, DATE and CALI change nothing. Unknown ones are warned of once.
Track parseFdr(const std::string& text, const std::string& name);

} // namespace headless
