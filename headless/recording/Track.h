#pragma once

#include <string>
#include <vector>

namespace headless {

// A dataref, or elements of one, that a track has values of.
struct TrackColumn {
    // NAME, NAME[3] or NAME[2:5]; empty for a column that is left out.
    std::string name;
    // A number of the file times this is one of the simulator's.
    double factor = 1.0;
    // How many numbers a row has of it.
    std::size_t width = 1;
};

struct TrackRow {
    // Since the first row.
    double seconds = 0.0;
    // Of all columns, one after the other, in the simulator's units.
    std::vector<double> numbers;
};

// What a file says besides, at a time since the first row.
struct TrackRemark {
    double seconds = 0.0;
    std::string text;
};

// A dataref's value from the beginning on.
struct TrackSetting {
    std::string dataref;
    std::string value;
};

// What a file of flight data has, in the order of time.
struct Track {
    std::vector<TrackColumn> columns;
    std::vector<TrackRow> rows;
    std::vector<TrackRemark> remarks;
    std::vector<TrackSetting> settings;
    // The aircraft's description; empty for the one that is there.
    std::string aircraft;
    // What could not be read and is left out, "FILE:LINE: reason".
    std::vector<std::string> warnings;
};

// Reads a .fdr or a .csv file. Throws TextFileError, one line, when nothing in it can be read.
// `rowSeconds` is the time between the rows of a .csv that has no times.
Track readTrack(const std::string& path, double rowSeconds);

} // namespace headless
