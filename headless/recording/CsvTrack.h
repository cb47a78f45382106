#pragma once

#include <string>

#include "headless/recording/Track.h"

namespace headless {

// Reads a recording as comma-separated values. The first line names the datarefs, NAME, NAME[3] or
// NAME[2:5], a type after a colon is passed over; the first of them is "time" if the rows have
// times in seconds. An array is one field in quotes with commas in it:
//
//     time,sim/cockpit2/controls/yoke_pitch_ratio:float,test/ints:int[2]
//     0.000,0.25,"3,4"
//
// Without times the rows are `rowSeconds` apart.
Track parseCsv(const std::string& text, const std::string& name, double rowSeconds);

} // namespace headless
