#pragma once

#include "headless/tracks/Track.h"
#include "tools/orvane/files/Problems.h"
#include "tools/orvane/record/Recording.h"

namespace orvane::tool {

// A flight data recorder's file as a recording: position and attitude, and its DREF columns, of
// which the last counts if a name is there twice. A column is float, unless its comment is "int" or
// "byte", as `orvane record` writes them; elements of one array are of one type. What a column's
// type cannot hold is rounded or limited. Errors are added to the problems.
Recording fdrRecording(const headless::Track& track, Problems& problems);

} // namespace orvane::tool
