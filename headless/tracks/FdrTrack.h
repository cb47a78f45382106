#pragma once

#include <string>

#include "headless/tracks/Track.h"

namespace headless {

// Reads the text of a flight data recorder's file, version 4.
//
// Line 1 is A or I, line 2 begins with 4. Keywords follow, then rows: Zulu time, longitude,
// latitude, feet, heading, pitch and roll in degrees, and a column for each DREF. Commas, tabs and
// blanks separate fields. Times without seconds are spread over the minute, rows of the same second
// over the second.
//
// The keywords ACFT, TAIL, TIME, PRES, TEMP, DISA and WIND become settings; TEXT, WARN, MARK and
// EVNT become remarks; COMM, DATE and CALI change nothing. Unknown keywords are named once.
Track parseFdr(const std::string& text, const std::string& name);

} // namespace headless
