#pragma once

#include <string>

#include "headless/tracks/Track.h"

namespace headless {

// Reads a recording as comma-separated values. The first line names the datarefs: NAME, NAME[3] or
// NAME[2:5]. A type after a colon is ignored. If the rows have times in seconds, the first column
// is "time". An array is one field in quotes, with commas between its elements:
//
//     time,sim/cockpit2/controls/yoke_pitch_ratio:float,test/ints:int[2]
//     0.000,0.25,"3,4"
//
// Without times the rows are `rowSeconds` apart.
Track parseCsv(const std::string& text, const std::string& name, double rowSeconds);

} // namespace headless
