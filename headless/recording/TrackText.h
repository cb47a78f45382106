#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "headless/recording/Track.h"
#include "headless/world/TextLines.h"

namespace headless {

// Throws TextFileError when the file cannot be read.
std::string wholeFile(const std::string& path);

// Throws std::invalid_argument for what is not a number. "nan" and "inf" are.
double numberIn(std::string_view text);
// For these as well.
double finiteNumberIn(std::string_view text);

// Calls `parse` for every line that is not blank, whatever ends it: LF, CRLF or CR. What it throws
// as std::invalid_argument becomes one of the track's warnings, and the line is left out; a
// TextFileError ends it. Throws TextFileError when no row was read.
void parseTrack(Track& track, const std::string& text, const std::string& name,
                const std::function<void(const std::string& line, int number)>& parse);

} // namespace headless
