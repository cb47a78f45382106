#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/lists/TextLines.h"
#include "headless/tracks/Track.h"

namespace headless {

// Throws TextFileError if the file cannot be read.
std::string wholeFile(const std::string& path);

// Throws std::invalid_argument if the text is not a number. Accepts "nan" and "inf".
double numberIn(std::string_view text);
// Also throws for "nan" and "inf".
double finiteNumberIn(std::string_view text);

// Calls `parse` for every line that is not blank; LF, CRLF or CR ends a line. If `parse` throws
// std::invalid_argument, the line is skipped and the error becomes one of the track's warnings; a
// TextFileError ends the reading. Throws TextFileError if no row was read.
void parseTrack(Track& track, const std::string& text, const std::string& name,
                const std::function<void(const std::string& line, int number)>& parse);

} // namespace headless
