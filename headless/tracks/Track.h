#pragma once

#include <string>
#include <vector>

namespace headless {

// A dataref, or elements of one, whose values are in a track.
struct TrackColumn {
    // NAME, NAME[3] or NAME[2:5]; empty for a column that is skipped.
    std::string name;
    // Converts a number of the file to the simulator's units.
    double factor = 1.0;
    // The number of values per row.
    std::size_t width = 1;
    // What the file says about it, and in which line, if it has a line of its own.
    std::string comment{};
    int line = 0;
};

struct TrackRow {
    // Since the first row.
    double seconds = 0.0;
    // The numbers of all columns in order, in the simulator's units.
    std::vector<double> numbers;
};

// A remark in the file; the time is since the first row.
struct TrackRemark {
    double seconds = 0.0;
    std::string text;
};

// A dataref's value, set at the start.
struct TrackSetting {
    std::string dataref;
    std::string value;
};

// The contents of a flight data file, in order of time.
struct Track {
    std::vector<TrackColumn> columns;
    std::vector<TrackRow> rows;
    std::vector<TrackRemark> remarks;
    std::vector<TrackSetting> settings;
    // The aircraft's description; empty to keep the current aircraft.
    std::string aircraft;
    // What could not be read and is skipped, "FILE:LINE: reason".
    std::vector<std::string> warnings;
    // Keywords that this reader does not know, once each, in the same form.
    std::vector<std::string> unknown;
};

// Whether the file's name ends in .fdr, in any case.
bool isFdrFile(const std::string& path);

// Reads a .fdr or a .csv file. Throws TextFileError, with one line, if nothing in it can be read.
// `rowSeconds` is the time between the rows of a .csv without times.
Track readTrack(const std::string& path, double rowSeconds);

} // namespace headless
