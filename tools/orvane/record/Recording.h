#pragma once

#include <string>
#include <vector>

#include "orvane/velmar/Client.h"
#include "tools/orvane/datarefs/DatarefArgument.h"
#include "tools/orvane/files/InputLines.h"
#include "tools/orvane/files/Problems.h"

namespace orvane::tool {

// A recording is CSV. Its header is "time" and a NAME:TYPE for each dataref; a row has the seconds
// since the recording began and the values, an array as one field with commas in it:
//
//     time,sim/cockpit2/controls/yoke_pitch_ratio:float,test/ints:int[2]
//     0.000,0.25,"3,4"
//
// Elements of an array are headed as the user named them: NAME[3]:float. Reading gives back exactly
// what was written.

// Both without a line end.
std::string recordingHeader(const std::vector<DatarefArgument>& datarefs);
std::string recordingRow(double seconds, const std::vector<velmar::Value>& values);

struct RecordedRow {
    double seconds = 0;
    std::vector<velmar::Value> values;
};

struct Recording {
    std::vector<DatarefArgument> datarefs;
    std::vector<RecordedRow> rows;
    // The line that is skipped because its line end is missing; 0 if there is none.
    std::size_t cutLine = 0;
    // A .fdr has the aircraft, its tail number, time or weather, which are not among the datarefs.
    bool hasSettings = false;
};

// Reads a whole file. Errors are added to the problems.
Recording readRecording(InputLines& lines, Problems& problems);

} // namespace orvane::tool
